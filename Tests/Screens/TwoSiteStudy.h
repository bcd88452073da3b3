#pragma once

#include "Tests/Screens/ScreenWorkplace.h"

namespace sorvane {

/// Twelve cases of two sites and three bands, with an outlier, a missing score and a missing band.
class TwoSiteStudy : public ScreenWorkplace {
public:
    TwoSiteStudy() {
        state.importPastedData(
            "site,band,passed,later,score,again,third,age\n"
            "north,low,yes,yes,3.5,4.0,4.5,31\n"
            "north,low,no,yes,2.5,4.5,3.5,45\n"
            "north,mid,yes,yes,4.5,4.0,5.5,38\n"
            "north,mid,no,no,5.0,6.5,6.0,27\n"
            "north,high,yes,no,6.5,6.0,8.0,52\n"
            "north,high,no,yes,7.0,8.5,7.5,41\n"
            "south,low,yes,yes,1.5,2.0,3.0,36\n"
            "south,low,no,no,2.0,3.5,2.5,29\n"
            "south,mid,no,yes,3.0,3.5,5.0,47\n"
            "south,mid,no,yes,4.0,5.5,4.0,33\n"
            "south,high,yes,yes,4.5,5.0,6.5,58\n"
            "south,NA,no,no,NA,9.0,12.0,24\n");
        assign({"score", "again", "third", "age"}, VariableKind::outcome);
        assign({"site", "band", "passed", "later"}, VariableKind::grouping);
    }
    /// Fills the screen, runs it, and gives what it then shows.
    ScreenContent shown(StudioScreen screen, const Settings& settings) {
        screens.appear(screen);
        set(settings);
        const std::optional<std::string> refusal = screens.at(screen).run();
        EXPECT_FALSE(refusal) << *refusal;
        return screens.at(screen).content();
    }
};

}  // namespace sorvane
