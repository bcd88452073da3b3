#include "SorvaneCore/Models/Mediation/MediationAnalysis.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

bool areGiven(const CallArguments& call) {
    return call.has("covariates") || call.has("covariateNames");
}

/// The covariates, which may be left out.
struct Covariates {
    ColumnList read(const CallArguments& call) const {
        // Names that stand beside the columns are no business of every procedure.
        call.isGiven("covariateNames");
        return areGiven(call) ? call.numericColumns("covariates", "covariateNames") : ColumnList();
    }
    std::vector<ListedArgument> listed() const {
        return {{"covariates", "list of columns of numbers", ""}};
    }
};

struct CovariateNames {
    NameList read(const CallArguments& call) const {
        return areGiven(call) ? call.columnNames("covariateNames", "covariates") : NameList();
    }
    std::vector<ListedArgument> listed() const { return {{"covariateNames", "list of names", ""}}; }
};

}  // namespace

std::vector<Procedure> mediationProcedures() {
    using namespace arguments;  // NOLINT(google-build-using-namespace)
    const Column x{"x"};
    const Column outcome{"outcome"};
    const Covariates covariates{};
    const MediationOptions start;
    return {
        procedure(
            "MediationAnalysis.simpleMediation",
            [](const NumericColumn& xs, const NumericColumn& ms, const NumericColumn& ys,
               const ColumnList& others, std::int64_t samples, double level, std::uint64_t seed) {
                return MediationAnalysis::simpleMediation(
                    xs, ms, ys, others,
                    {.bootstrapSamples = samples, .confidenceLevel = level, .seed = seed});
            },
            x, Column{"mediator"}, outcome, covariates,
            Setting<std::int64_t>{"bootstrapSamples", start.bootstrapSamples},
            Setting<double>{"confidenceLevel", start.confidenceLevel}, Seed{"seed", start.seed}),
        procedure(
            "MediationAnalysis.moderation",
            [](const NumericColumn& xs, const NumericColumn& ws, const NumericColumn& ys,
               const ColumnList& others, const std::string& xName, const std::string& moderatorName,
               const NameList& covariateNames) {
                return MediationAnalysis::moderation(
                    xs, ws, ys, others,
                    {.x = xName, .moderator = moderatorName, .covariates = covariateNames});
            },
            x, Column{"moderator"}, outcome, covariates, ColumnName{"xName", "x"},
            ColumnName{"moderatorName", "moderator"}, CovariateNames{}),
    };
}

}  // namespace sorvane
