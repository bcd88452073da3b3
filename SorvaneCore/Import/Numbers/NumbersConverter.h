#pragma once

#include <filesystem>

namespace sorvane {

/// The two files that turn a Numbers document into text: a program that holds a script engine, and
/// the script that it runs. Where either is missing, there is no converter.
struct NumbersConverter {
    std::filesystem::path program;
    std::filesystem::path script;

    /// Those beside the running program, or else those that were built with it.
    static NumbersConverter installed();
};

/// How the program tells what became of a document, by its exit status.
namespace NumbersConverterStatus {

inline constexpr int converted = 0;
/// The output is the text of the script's exception.
inline constexpr int failed = 1;
/// The script could not be read or the engine not be started.
inline constexpr int unavailable = 2;

}  // namespace NumbersConverterStatus

}  // namespace sorvane
