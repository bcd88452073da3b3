#include "SorvaneMac/Screens/LatentClass/LatentClassScreen.h"

#include <algorithm>

#include "SorvaneMac/Screens/LatentClass/LatentClassAnalyses.h"
#include "SorvaneMac/Screens/LatentClass/LatentIndicators.h"
#include "SorvaneMac/Screens/LatentClass/MixtureControls.h"
#include "SorvaneMac/Screens/Seeding.h"

namespace sorvane {

LatentClassScreen::LatentClassScreen(StudioState& state, LatentClassFields& fields)
    : AnalysisScreen(StudioScreen::latentClass, state, fields.lcHasRun),
      fields_(fields),
      mixtureWatch_(state.fields.observe([&fields](const AnyField& changed) {
          if (&changed == &fields.fmResult) {
              const std::optional<FactorMixtureResult>& result = fields.fmResult.get();
              fields.fmHasRun.set(result.has_value());
              fields.fmDisplayNames.set(result ? result->variableNames
                                               : std::vector<std::string>());
          }
      })) {
    chooseBy("Kind of classes", fields.lcKind,
             [&fields] { fields.lcMode.set(modeOf(fields.lcKind.get())); });
    add(LatentClassAnalyses::latentMixture(state, fields, LatentScreenKind::profile));
    add(LatentClassAnalyses::latentMixture(state, fields, LatentScreenKind::classes));
    add(LatentClassAnalyses::factorMixture(state, fields));
}

void LatentClassScreen::seed() {
    const VariableLists::List candidates =
        LatentIndicators::candidates(state_.dataset(), fields_.lcMode.get());
    Seeding::fillFirst(fields_.lcItems, candidates, candidates.size());
    fields_.lcClassCount.set(std::clamp(fields_.lcClassCount.get(), MixtureControls::fewestClasses,
                                        MixtureControls::mostClasses));
}

}  // namespace sorvane
