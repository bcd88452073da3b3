#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Survey/WeightedEstimators.h"
#include "SorvaneMac/Screens/Survey/SurveyDesignUsed.h"
#include "SorvaneMac/Screens/Survey/SurveyModelFields.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// An estimate as it was run.
struct SurveyRun {
    WeightedEstimand estimand = WeightedEstimand::mean;
    std::string variable;
    /// Of a ratio; empty otherwise.
    std::string denominator;
    /// Empty without subgroups.
    std::string group;
    SurveyDesignUsed design;
    WeightedEstimate estimate;
    std::vector<DomainEstimate> groups;
    /// With the weights alone; absent where the design is no more than that.
    std::optional<WeightedEstimate> weightsOnly;
    /// Without weights; absent for a total.
    std::optional<WeightedEstimate> unweighted;
    /// What the reader must know of the design's columns.
    std::vector<std::string> cautions;

    bool operator==(const SurveyRun&) const = default;
};
BOOST_DESCRIBE_STRUCT(SurveyRun,
                      (),
                      (estimand,
                       variable,
                       denominator,
                       group,
                       design,
                       estimate,
                       groups,
                       weightsOnly,
                       unweighted,
                       cautions))

/// The sampling design, what is estimated under it, and the last estimate.
struct SurveyFields {
    explicit SurveyFields(FieldRegistry& fields);

    Field<VariableName> svWeight;
    Field<VariableName> svStrata;
    Field<VariableName> svCluster;
    /// How many primary sampling units the population has in each row's stratum.
    Field<VariableName> svFpc;
    Field<NameSet> svReplicates;
    Field<ReplicateType> svReplicateType;
    Field<double> svFayRho;
    /// Multipliers as the user writes them: one for all replicates, or one each; blank takes those
    /// of the type.
    Field<std::string> svReplicateScale;
    Field<VariableName> svVar;
    Field<VariableName> svDenominator;
    Field<VariableName> svGroup;
    Field<std::string> svEstimand;
    /// In percent.
    Field<std::int64_t> svConfidence;
    Field<bool> svHasRun;
    Field<std::optional<SurveyRun>> svResult;
    /// Whether the other screens take the weights into account.
    Field<bool> surveyWeightsActive;
    SurveyModelFields models;
};

}  // namespace sorvane
