#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Survey/WeightedEstimators.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// The columns that make up a sampling design, and what they came to.
struct SurveyDesignUsed {
    std::string weight;
    /// Empty where the design has none.
    std::string strata;
    std::string clusters;
    std::string fpc;
    std::int64_t replicateCount = 0;
    ReplicateType replicateType = ReplicateType::jackknife;
    double fayRho = 0.0;
    std::int64_t stratumCount = 0;
    std::int64_t psuCount = 0;

    bool operator==(const SurveyDesignUsed&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    SurveyDesignUsed,
    (),
    (weight, strata, clusters, fpc, replicateCount, replicateType, fayRho, stratumCount, psuCount))

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
};

}  // namespace sorvane
