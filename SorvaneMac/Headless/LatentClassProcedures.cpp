#include "SorvaneCore/Models/FactorMixtureModel.h"
#include "SorvaneCore/Models/LatentClassModel.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

template <typename Options>
Options optionsOf(const NameList& names,
                  std::int64_t classCount,
                  std::int64_t maxIterations,
                  std::int64_t randomStarts,
                  std::uint64_t seed) {
    return {.variableNames = names,
            .classCount = classCount,
            .maxIterations = maxIterations,
            .randomStarts = randomStarts,
            .seed = seed};
}

/// Binds a fit of indicators that `Declared` reads.
template <typename Options, typename Declared, typename Fit>
Procedure mixtureProcedure(const std::string& name, Declared indicators, Fit fit) {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Options start;
    return procedure(
        name,
        [fit](const auto& columns, const NameList& names, std::int64_t classCount,
              std::int64_t maxIterations, std::int64_t randomStarts, std::uint64_t seed) {
            return fit(columns,
                       optionsOf<Options>(names, classCount, maxIterations, randomStarts, seed));
        },
        indicators, Names{"variableNames", "indicators"},
        Setting<std::int64_t>{"classCount", start.classCount},
        Setting<std::int64_t>{"maxIterations", start.maxIterations},
        Setting<std::int64_t>{"randomStarts", start.randomStarts},
        Setting<std::uint64_t>{"seed", start.seed});
}

}  // namespace

std::vector<Procedure> latentClassProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    return {
        mixtureProcedure<LatentClassOptions>(
            "LatentClassModel.fitProfile", Columns{"indicators", "variableNames"},
            [](const ColumnList& columns, const LatentClassOptions& options) {
                return LatentClassModel::fitProfile(columns, options);
            }),
        mixtureProcedure<LatentClassOptions>(
            "LatentClassModel.fitClass", CategoryColumns{"indicators", "variableNames"},
            [](const std::vector<CodedColumn>& columns, const LatentClassOptions& options) {
                std::vector<const TextColumn*> pointers;
                for (const CodedColumn& column : columns) {
                    pointers.push_back(column.get());
                }
                return LatentClassModel::fitClass(pointers, options);
            }),
        mixtureProcedure<FactorMixtureOptions>(
            "FactorMixtureModel.fit", Columns{"indicators", "variableNames"},
            [](const ColumnList& columns, const FactorMixtureOptions& options) {
                return FactorMixtureModel::fit(columns, options);
            }),
        mixtureProcedure<FactorMixtureOptions>(
            "FactorMixtureModel.sweep", Columns{"indicators", "variableNames"},
            [](const ColumnList& columns, const FactorMixtureOptions& options) {
                return FactorMixtureModel::sweep(columns, options);
            }),
    };
}

}  // namespace sorvane
