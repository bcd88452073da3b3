#include "SorvaneCore/Import/TextBudget.h"

#include "SorvaneCore/Dataset/TextColumnBuilder.h"

namespace sorvane {

void ColumnTextCharge::add(const Cell& cell, TextBudget& budget) {
    if (rowCount_++ < TextColumnBuilder::judgedRows) {
        judgedBytes_ += cell.bytes;
        takenBytes_ += cell.isFirstOfItsText ? cell.bytes : 0;
        // The column would take it all at once, if it were found to be mostly distinct.
        if (judgedBytes_ > budget.limit()) {
            budget.take(judgedBytes_);
        }
    }
    if (cell.isFirstOfItsText || !cell.hasCodes) {
        budget.take(cell.bytes);
    }
    if (hadCodes_ && !cell.hasCodes) {
        budget.take(judgedBytes_ - takenBytes_);
    }
    hadCodes_ = cell.hasCodes;
}

}  // namespace sorvane
