#pragma once

#include <string>

#include "SorvaneCore/Numerics/SplitMix64.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "Tests/Screens/ReferenceStudy.h"

namespace sorvane {

/// Thirty persons at nine times, whose outcomes rise by another slope each.
struct GrowthStudy {
    /// `rise` of the slopes for each step of time, of which one is `unit` long, from `first` on; in
    /// proportion to where the person starts, or apart from that.
    GrowthStudy(double first, double unit, double rise, bool isFromStart) {
        std::string text = "person,time,y\n";
        SplitMix64 random(8);
        const auto spread = [&random](double width) {
            return width * (2.0 * random.nextUnitDouble() - 1.0);
        };
        for (int person = 0; person < 30; ++person) {
            const double start = spread(1.0);
            const double slope = isFromStart ? rise * start : spread(rise);
            for (int step = 0; step < 9; ++step) {
                const double y = start + slope * (step - 4) + spread(0.3);
                text += "p" + std::to_string(person) + "," + svFmt(first + unit * step, 0) + "," +
                        svFmt(y, 6) + "\n";
            }
        }
        study.state.importPastedData(text);
        study.assign({"person"}, VariableKind::grouping);
        study.assign({"time", "y"}, VariableKind::outcome);
    }

    ScreenContent shown(bool isCorrelated) {
        return study.shown(StudioScreen::multilevel,
                           {{"mlOutcome", R"("y")"},
                            {"mlCluster", R"("person")"},
                            {"mlPredictors", R"(["time"])"},
                            {"mlRandomSlope", R"("time")"},
                            {"mlCorrelateRandom", isCorrelated ? "true" : "false"}});
    }

    ReferenceStudy study{"sleepstudy.csv"};
};

}  // namespace sorvane
