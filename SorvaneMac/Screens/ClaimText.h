#pragma once

#include <string>
#include <vector>

namespace sorvane::ClaimText {

/// What must not be claimed, sentence after sentence, as the caution of one finding.
std::string joined(const std::vector<std::string>& sentences);

}  // namespace sorvane::ClaimText
