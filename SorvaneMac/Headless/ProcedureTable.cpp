#include "SorvaneMac/Headless/ProcedureTable.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace sorvane {

Json Procedure::call(const CallArguments& given) const {
    JsonValueSink sink;
    answer(given, sink);
    return sink.take();
}

namespace ProcedureTable {

const std::vector<Procedure>& all() {
    static const std::vector<Procedure> table = [] {
        std::vector<Procedure> procedures;
        for (std::vector<Procedure> room :
             {numericsProcedures(), datasetProcedures(), analysesProcedures(),
              groupComparisonProcedures(), rankAndTableProcedures(), varianceProcedures(),
              generalizedRegressionProcedures(), dataReductionProcedures(), latentClassProcedures(),
              survivalProcedures(), surveyProcedures(), structuralProcedures(),
              mediationProcedures(), multilevelProcedures(), prepareProcedures(),
              imputationProcedures(), projectProcedures(), reviewProcedures()}) {
            procedures.insert(procedures.end(), std::make_move_iterator(room.begin()),
                              std::make_move_iterator(room.end()));
        }
        return procedures;
    }();
    return table;
}

const Procedure* find(std::string_view name) {
    const auto found = std::find_if(all().begin(), all().end(), [name](const Procedure& procedure) {
        return procedure.name == name;
    });
    return found == all().end() ? nullptr : &*found;
}

}  // namespace ProcedureTable

}  // namespace sorvane
