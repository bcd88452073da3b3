#include "SorvaneCore/Import/SPSS/SPSSReader.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/SPSS/SPSSColumns.h"
#include "SorvaneCore/Import/ValueLabelBudget.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::SPSSReader {

namespace {

using NumberText::integer;
using SPSSText::Encoding;

/// Names are copied to headers, summaries and issues; those of programs have 64 bytes.
constexpr std::size_t mostNameBytes = std::size_t{16} << 20;

std::string repairNote(std::size_t restoredBytes) {
    return "Repaired a UTF-8 transcoding of the binary file (restored " +
           integer(static_cast<std::int64_t>(restoredBytes)) + " damaged bytes).";
}

std::string dataNote(const SPSSDictionary& dictionary) {
    if (!dictionary.compressed) {
        return "Decoded uncompressed data.";
    }
    return "Decoded bytecode-compressed data (bias " +
           NumberText::fixed(std::trunc(dictionary.bias), 0) + ").";
}

std::string userMissingNote(std::size_t variables, std::uint64_t cells) {
    return "Applied user-defined missing values to " +
           integer(static_cast<std::int64_t>(variables)) + " variables (" +
           integer(static_cast<std::int64_t>(cells)) + " cells imported as missing).";
}

std::string parsedNote(std::size_t variables, std::size_t cases) {
    return "Parsed " + integer(static_cast<std::int64_t>(variables)) + " variables, " +
           integer(static_cast<std::int64_t>(cases)) + " cases.";
}

/// Valid UTF-8 as Latin-1; absent when a character is beyond that.
std::optional<std::string> toLatin1(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t position = 0; position < text.size(); ++position) {
        const auto lead = static_cast<unsigned char>(text[position]);
        if (lead < 0x80) {
            bytes.push_back(text[position]);
        } else if (lead == 0xC2 || lead == 0xC3) {
            const auto next = static_cast<unsigned char>(text[++position]);
            bytes.push_back(static_cast<char>((lead & 0x03) << 6 | (next & 0x3F)));
        } else {
            return std::nullopt;
        }
    }
    return bytes;
}

/// Gives variables names that differ in more than letter case.
class VariableNames {
public:
    std::string next(std::string name) {
        ++count_;
        if (name.empty()) {
            name = "VAR" + integer(count_);
        }
        const auto [entry, isNew] = seen_.try_emplace(UnicodeText::upperCased(name), 1);
        if (isNew) {
            return name;
        }
        name += "_" + integer(++entry->second);
        seen_[UnicodeText::upperCased(name)] = 1;
        return name;
    }

private:
    std::int64_t count_ = 0;
    std::map<std::string, std::int64_t> seen_;
};

std::string shownName(const SPSSDictionary& dictionary, const std::string& shortName) {
    if (dictionary.longNames.empty()) {
        return shortName;
    }
    const auto longName = dictionary.longNames.find(UnicodeText::upperCased(shortName));
    return longName == dictionary.longNames.end() ? shortName : longName->second;
}

/// Absent when the names take more than memory should be spent on: any number of variables can share
/// a long name.
std::optional<std::vector<SPSSVariable>> foldedVariables(const SPSSDictionary& dictionary,
                                                         Encoding encoding) {
    std::vector<SPSSVariable> variables;
    VariableNames names;
    std::size_t nameBytes = 0;
    const auto& records = dictionary.variables;
    for (std::size_t slot = 0; slot < records.size(); ++slot) {
        const SPSSDictionary::VariableRecord& record = records[slot];
        if (record.typeCode == -1) {
            continue;
        }
        SPSSVariable variable{
            .name = names.next(shownName(dictionary, record.shortName)),
            .label =
                SPSSText::decodeString(record.labelBytes.value_or(std::string_view()), encoding),
            .typeCode = record.typeCode,
            .format = {.type = record.printFormatType, .decimals = record.printDecimals},
            .missing = record.missing,
            .firstSlot = slot};
        nameBytes += variable.name.size();
        if (nameBytes > mostNameBytes) {
            return std::nullopt;
        }
        while (record.isString() && slot + 1 < records.size() && records[slot + 1].typeCode == -1) {
            ++variable.slotCount;
            ++slot;
        }
        variables.push_back(std::move(variable));
    }
    return variables;
}

/// The value of a label as the cells of the variable print it.
std::string labelKey(std::string_view raw,
                     const SPSSVariable& variable,
                     const SPSSDictionary& dictionary,
                     Encoding encoding) {
    if (variable.isString()) {
        const std::string text = SPSSText::decodeString(raw, encoding);
        return std::string(SPSSText::trimmedBlanks(text));
    }
    const auto value = ByteReader::number<double>(raw.data(), dictionary.numberOrder());
    return std::isnan(value) ? std::string() : SPSSNumbers::cellText(value, variable.format);
}

/// The variables that a set of labels is for, each once.
std::vector<const SPSSVariable*> labelledVariables(
    const SPSSDictionary::ValueLabelSet& set,
    const std::vector<const SPSSVariable*>& variableOfSlot) {
    std::vector<const SPSSVariable*> variables;
    for (const std::int64_t slot : set.varIndices) {
        if (slot >= 0 && static_cast<std::size_t>(slot) < variableOfSlot.size() &&
            variableOfSlot[static_cast<std::size_t>(slot)] != nullptr) {
            variables.push_back(variableOfSlot[static_cast<std::size_t>(slot)]);
        }
    }
    std::sort(variables.begin(), variables.end());
    variables.erase(std::unique(variables.begin(), variables.end()), variables.end());
    return variables;
}

std::vector<const SPSSVariable*> variablesBySlot(const SPSSDictionary& dictionary,
                                                 const std::vector<SPSSVariable>& variables) {
    std::vector<const SPSSVariable*> bySlot(dictionary.variables.size(), nullptr);
    for (const SPSSVariable& variable : variables) {
        std::fill_n(bySlot.begin() + static_cast<std::ptrdiff_t>(variable.firstSlot),
                    variable.slotCount, &variable);
    }
    return bySlot;
}

/// Gives the variables the labels that the sets hold for them. Variables that print alike share the
/// labels of a set.
class ValueLabelReader {
public:
    ValueLabelReader(const SPSSDictionary& dictionary, Encoding encoding, std::size_t fileBytes)
        : dictionary_(dictionary), encoding_(encoding), budget_(fileBytes) {}

    /// Adds the labels by variable name.
    ///
    /// Returns    false when sets were left out, as they take more memory than should be spent
    bool read(const std::vector<SPSSVariable>& variables, TabularImport& result) {
        const std::vector<const SPSSVariable*> bySlot = variablesBySlot(dictionary_, variables);
        bool hasAllLabels = true;
        for (const SPSSDictionary::ValueLabelSet& set : dictionary_.valueLabelSets) {
            std::map<Print, std::optional<PricedLabels>> labelsByPrint;
            for (const SPSSVariable* variable : labelledVariables(set, bySlot)) {
                const auto [labels, isNew] = labelsByPrint.try_emplace(printOf(*variable));
                if (isNew) {
                    labels->second = labelsOf(set, *variable);
                }
                hasAllLabels = labels->second && budget_.takeUse(labels->second->bytes) &&
                               add(labels->second->labels, result.valueLabels[variable->name]) &&
                               hasAllLabels;
            }
        }
        return hasAllLabels;
    }

private:
    /// What the values of a variable are printed by: whether they are texts, and the format.
    using Print = std::pair<bool, SPSSNumbers::Format>;

    static Print printOf(const SPSSVariable& variable) {
        return {variable.isString(), variable.isString()
                                         ? SPSSNumbers::Format()
                                         : SPSSNumbers::effectiveFormat(variable.format)};
    }

    std::optional<PricedLabels> labelsOf(const SPSSDictionary::ValueLabelSet& set,
                                         const SPSSVariable& variable) {
        const std::size_t leftBefore = budget_.left();
        ValueLabels::Map labels;
        for (const SPSSDictionary::ValueLabel& entry : set.labels) {
            std::string key = labelKey(entry.raw, variable, dictionary_, encoding_);
            std::string label = SPSSText::decodeString(entry.label, encoding_);
            if (!budget_.take(key.size() + label.size())) {
                budget_.reset(leftBefore);
                return std::nullopt;
            }
            labels[std::move(key)] = std::move(label);
        }
        return PricedLabels{.labels = std::move(labels), .bytes = leftBefore - budget_.left()};
    }

    /// Adds a further set to the labels of a variable; of one value the later label counts.
    bool add(const ValueLabels& further, ValueLabels& labels) {
        if (labels.empty()) {
            labels = further;
            return true;
        }
        if (!take(further) || (labels.isShared() && !take(labels))) {
            return false;
        }
        for (const auto& [value, label] : further) {
            labels.set(value, label);
        }
        return true;
    }

    /// What is taken for a copy that does not fit stays taken: it may be tried for any number of
    /// variables.
    bool take(const ValueLabels& copied) {
        return budget_.canTake(copied.size()) &&
               std::ranges::all_of(copied, [this](const auto& entry) {
                   return budget_.take(entry.first.size() + entry.second.size());
               });
    }

    const SPSSDictionary& dictionary_;
    Encoding encoding_;
    ValueLabelBudget budget_;
};

void describeVariables(std::vector<SPSSVariable> variables, TabularImport& result) {
    for (SPSSVariable& variable : variables) {
        if (!variable.label.empty()) {
            result.variableLabels[variable.name] = std::move(variable.label);
        }
        if (variable.missing) {
            result.userMissingSpecs[variable.name] = variable.missing->displayText();
        }
        result.variableNames.push_back(std::move(variable.name));
    }
}

}  // namespace

std::optional<TabularImport> readRaw(std::string_view bytes) {
    std::optional<SPSSDictionary> dictionary = SPSSDictionary::read(bytes);
    if (!dictionary) {
        return std::nullopt;
    }
    const auto [encoding, encodingNote] = SPSSText::resolveEncoding(dictionary->encodingName);
    std::optional<std::vector<SPSSVariable>> variables = foldedVariables(*dictionary, encoding);
    std::optional<SPSSTable> table =
        variables ? readSPSSTable(*dictionary, *variables, bytes.substr(dictionary->end))
                  : std::nullopt;
    if (!table) {
        return std::nullopt;
    }
    TabularImport result;
    const bool hasAllLabels =
        ValueLabelReader(*dictionary, encoding, bytes.size()).read(*variables, result);
    describeVariables(*std::move(variables), result);
    result.rows = std::move(table->rows);
    result.implausibleColumns = std::move(table->implausibleColumns);
    result.notes = std::move(dictionary->notes);
    result.notes.push_back(encodingNote);
    result.notes.push_back(dataNote(*dictionary));
    if (table->userMissingCells > 0) {
        result.notes.push_back(
            userMissingNote(result.userMissingSpecs.size(), table->userMissingCells));
    }
    result.notes.push_back(parsedNote(result.variableNames.size(), result.rows.rowCount()));
    if (!hasAllLabels) {
        result.notes.push_back(tooManyLabelsNote());
    }
    return result;
}

std::optional<TabularImport> read(std::string_view bytes) {
    std::optional<TabularImport> result = readRaw(bytes);
    if (result || !bytes.starts_with("$FL2") || !UnicodeText::isValidUtf8(bytes)) {
        return result;
    }
    const std::optional<std::string> repaired = toLatin1(bytes);
    if (!repaired || repaired->size() >= bytes.size()) {
        return std::nullopt;
    }
    result = readRaw(*repaired);
    if (result) {
        result->notes.push_back(repairNote(bytes.size() - repaired->size()));
    }
    return result;
}

}  // namespace sorvane::SPSSReader
