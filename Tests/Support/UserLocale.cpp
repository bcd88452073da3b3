#include <clocale>

namespace {

/// Tests run in the locale of the environment, which is where the window toolkit puts the program.
[[maybe_unused]] const char* const userLocale = std::setlocale(LC_ALL, "");

}  // namespace
