#include "SorvaneMac/Screens/LatentClass/MixtureControls.h"

#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/LatentClass/LatentIndicators.h"
#include "SorvaneMac/Screens/OptionControls.h"

namespace sorvane::MixtureControls {

void add(SetupForm& form,
         const ImportedDataset& dataset,
         LatentClassFields& fields,
         LatentMixtureMode mode) {
    const VariableLists::List candidates = LatentIndicators::candidates(dataset, mode);
    form.controls.emplace_back(FormControls::withUnavailable(
        FormControls::variableCheckList(
            mode == LatentMixtureMode::classAnalysis ? "Categorical indicators" : "Indicators",
            fields.lcItems, candidates),
        fields.lcItems.get(), candidates));
    form.controls.emplace_back(
        OptionControls::stepper("Classes", fields.lcClassCount, fewestClasses, mostClasses));
}

Guide guide() {
    return {.answers =
                "Whether cases fall into a few groups that nobody observed, what the groups look "
                "like on the indicators, and how surely each case can be placed in one.",
            .needs =
                "Two indicators or more that mean something together: numbers for profiles, "
                "answers of a few categories for classes. Some hundreds of cases, and clearly "
                "more than the smallest class would leave with a handful. Within a class the "
                "indicators are taken to be unrelated.",
            .doNotClaim = {
                "Do not claim that the classes exist because a program found them; skewed "
                "indicators alone make several classes fit better than one.",
                "Do not choose a class count for its neat story; compare the BIC over several "
                "counts and look at each solution.",
                "Do not treat the most likely class as a fact about a person, least of all in a "
                "later analysis that forgets how unsure it was."}};
}

}  // namespace sorvane::MixtureControls
