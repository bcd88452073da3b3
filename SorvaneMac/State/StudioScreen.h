#pragma once

#include <boost/describe/enum.hpp>
#include <string_view>
#include <vector>

namespace sorvane {

/// The screens of the workspace, in the order of the work. The raw value is the case name.
BOOST_DEFINE_ENUM_CLASS(StudioScreen,
                        overview,
                        importData,
                        dataPreview,
                        dataPrep,
                        instrumentMap,
                        variableTypes,
                        dataQuality,
                        scalesReliability,
                        descriptives,
                        inferential,
                        correlation,
                        regression,
                        nonparametric,
                        dataReduction,
                        multivariate,
                        sem,
                        survey,
                        multilevel,
                        latentClass,
                        survival,
                        mediation,
                        invariance,
                        groupPatterns,
                        relationships,
                        categoricalTests,
                        findings,
                        technicalAppendix,
                        export_,
                        userGuide)

/// The case name; `export_` is stored as "export".
std::string_view rawValue(StudioScreen screen);
/// The title shown in the navigation and above the screen.
std::string_view title(StudioScreen screen);
bool isAdvanced(StudioScreen screen);
/// What a method record calls the screen's analysis: "scale reliability"; "project review" where it
/// has no name of its own.
std::string_view methodName(StudioScreen screen);
/// The question that the screen answers, in a line.
std::string_view purpose(StudioScreen screen);
const std::vector<StudioScreen>& allStudioScreens();

/// The groups of the navigation list.
enum class StudioSection { project, instrument, evidence, advanced, report };
BOOST_DESCRIBE_ENUM(StudioSection, project, instrument, evidence, advanced, report)

std::string_view displayName(StudioSection section);
/// The group under which a screen stands: the workflow order cut into stretches.
StudioSection section(StudioScreen screen);

enum class InspectorTab { whyNative, reproduce, coach, notes };
BOOST_DESCRIBE_ENUM(InspectorTab, whyNative, reproduce, coach, notes)

enum class InspectorPane { setup, guide, notes };
BOOST_DESCRIBE_ENUM(InspectorPane, setup, guide, notes)

}  // namespace sorvane
