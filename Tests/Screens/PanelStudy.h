#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "Tests/Screens/ScreenWorkplace.h"

namespace sorvane {

inline constexpr std::string_view panel =
    "id,school,room,sick,dead,days,visit,score,x1,late,q1,q2,q3,weight,psu,stratum\n"
    "1,north,a,0,0,12,1,1.5,2,NA,1,2,1,1.2,1,u\n"
    "1,north,a,1,1,30,2,2.5,4,3,2,3,2,0.8,1,u\n"
    "2,north,b,0,0,25,1,3.5,3,4,3,4,3,1.1,2,u\n"
    "2,north,b,1,1,7,2,4.5,5,NA,4,1,4,0.9,2,u\n"
    "3,south,a,0,1,18,1,5.5,7,6,1,2,2,1,3,r\n"
    "3,south,a,1,0,40,2,6.5,6,2,2,3,1,1.3,3,r\n"
    "4,south,b,0,1,33,1,7.5,9,8,3,4,4,0.7,4,r\n"
    "4,south,b,1,0,21,2,8.5,8,1,4,1,3,1,4,r\n"
    "5,west,c,0,0,50,1,9.5,10,5,1,2,2,1,5,r\n"
    "5,west,c,1,1,60,2,10.5,11,7,2,3,3,1,5,r\n";

/// A workspace of its own with repeated measurements of five persons.
class PanelStudy : public ScreenWorkplace {
public:
    PanelStudy() {
        state.importPastedData(panel);
        assign({"school", "room"}, VariableKind::grouping);
        assign({"id", "weight", "psu", "stratum"}, VariableKind::administrative);
        assign({"sick", "dead"}, VariableKind::status);
        assign({"days", "visit", "score", "x1", "late"}, VariableKind::outcome);
        assign({"q1", "q2", "q3"}, VariableKind::psychometricItem);
    }
    std::vector<Control> controls(StudioScreen id) { return screens.at(id).setup().controls; }
    bool says(StudioScreen id, const std::string& text) {
        return std::ranges::any_of(controls(id), [&text](const Control& control) {
            const auto* note = std::get_if<NoteControl>(&control);
            return note && note->text == text;
        });
    }
};

}  // namespace sorvane
