#include "SorvaneMac/Report/ReportItem.h"

namespace sorvane {

bool isBold(const ReportTable& table, std::size_t row, std::size_t column) {
    return table.boldMask && row < table.boldMask->size() &&
           column < (*table.boldMask)[row].size() && (*table.boldMask)[row][column];
}

}  // namespace sorvane
