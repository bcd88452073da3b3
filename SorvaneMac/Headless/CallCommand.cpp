#include <iterator>
#include <new>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <stdexcept>

#include "SorvaneCore/Import/ImportError.h"
#include "SorvaneCore/Import/SpreadsheetImporter.h"
#include "SorvaneCore/Models/Structural/SEMModelSpecParser.h"
#include "SorvaneMac/Headless/Commands.h"
#include "SorvaneMac/Headless/GivenJson.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {

namespace {

constexpr int prettyIndent = 2;

struct CallOptions {
    std::string procedure;
    std::optional<std::string> dataFile;
    std::optional<std::string> argumentsFile;
    bool pretty = false;
};

CallOptions readOptions(const std::vector<std::string>& words) {
    CallOptions options;
    std::vector<std::string> plain;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i] == "--pretty") {
            options.pretty = true;
        } else if (words[i] == "--data") {
            if (i + 1 == words.size()) {
                throw CallError("Name a file after --data.");
            }
            options.dataFile = words[++i];
        } else {
            plain.push_back(words[i]);
        }
    }
    if (plain.empty() || plain.size() > 2) {
        throw CallError(
            "Call a procedure so: sorvane call PROCEDURE [--data FILE] [--pretty] "
            "[ARGS.json]");
    }
    options.procedure = plain.front();
    if (plain.size() == 2) {
        options.argumentsFile = plain.back();
    }
    return options;
}

Json readArguments(const std::optional<std::string>& file, std::istream& standardInput) {
    constexpr auto what = "arguments";
    if (file) {
        return GivenJson::ofFile(*file, what);
    }
    return GivenJson::of(std::string{std::istreambuf_iterator<char>(standardInput), {}}, what);
}

ExitStatus refuseMemory(CommandStreams streams) {
    streams.error << "The procedure needs more memory than there is; give it smaller numbers.\n";
    return ExitStatus::refused;
}

}  // namespace

ExitStatus callCommand(const std::vector<std::string>& words, CommandStreams streams) {
    try {
        const CallOptions options = readOptions(words);
        const Procedure* procedure = ProcedureTable::find(options.procedure);
        if (!procedure) {
            throw CallError("There is no procedure \"" + options.procedure +
                            "\"; `sorvane procedures` lists them all.");
        }
        Json given = readArguments(options.argumentsFile, streams.in);
        std::optional<ImportedDataset> dataset;
        if (options.dataFile) {
            dataset = SpreadsheetImporter().importData(*options.dataFile);
        }
        const Json result = procedure->call({std::move(given), std::move(dataset)});
        streams.out << result.dump(options.pretty ? prettyIndent : -1) << '\n';
        return ExitStatus::success;
    } catch (const ImportError& error) {
        streams.error << error.what() << '\n';
        return ExitStatus::refused;
    } catch (const SEMSyntaxError& error) {
        streams.error << error.what() << '\n';
        return ExitStatus::refused;
    } catch (const CallError& error) {
        streams.error << error.what() << '\n';
        return ExitStatus::badArguments;
    } catch (const GivenJsonError& error) {
        streams.error << error.what() << '\n';
        return ExitStatus::badArguments;
    } catch (const std::bad_alloc&) {
        return refuseMemory(streams);
    } catch (const std::length_error&) {
        return refuseMemory(streams);
    }
}

}  // namespace sorvane
