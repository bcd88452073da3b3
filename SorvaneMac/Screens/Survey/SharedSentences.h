#pragma once

#include <string>
#include <vector>

/// What several results say alike, told once.
namespace sorvane::SharedSentences {

/// What one of the results says.
struct Saying {
    std::string name;
    std::vector<std::string> sentences;
};

/// Each sentence once, in the order of its first appearance.
///
/// Method     sentences that differ in their counts alone are one, with the least and the most of
///            each count: "6 to 11". One that not all results say is headed by the names of those
///            that do
std::vector<std::string> told(const std::vector<Saying>& sayings);

/// "a and b"; of many names the first, and how many more there are.
std::string someOf(const std::vector<std::string>& names);

}  // namespace sorvane::SharedSentences
