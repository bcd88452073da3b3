#include "Benchmarks/StudyFiles.h"

#include <algorithm>
#include <array>
#include <bit>
#include <fstream>
#include <libdeflate.h>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Benchmarks/Draws.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::StudyFiles {

namespace {

constexpr std::array<std::string_view, 5> answerLabels = {"Strongly disagree", "Disagree",
                                                          "Neutral", "Agree", "Strongly agree"};
constexpr std::array<std::string_view, 4> places = {"urban", "rural", "suburb", "abroad"};
constexpr std::size_t textWidth = 8;

template <typename Number>
std::string bytesOf(Number number) {
    const auto raw = std::bit_cast<std::array<char, sizeof(Number)>>(number);
    return {raw.begin(), raw.end()};
}

std::string filled(std::string_view text, std::size_t size, char filler) {
    std::string result(text);
    result.resize(size, filler);
    return result;
}

struct Widths {
    std::size_t items = 0;
    std::size_t scores = 0;
    std::size_t texts = 0;
};

constexpr Widths studyWidths = {.items = 40, .scores = 6, .texts = 4};
constexpr Widths workbookWidths = {.items = 14, .scores = 4, .texts = 2};

struct Respondent {
    /// NaN where missing.
    std::vector<double> numbers;
    std::vector<std::string_view> texts;
};

Respondent respondent(Draws& draws, const Widths& widths) {
    constexpr std::size_t factors = 4;
    constexpr double thousandths = 1000.0;
    Respondent result;
    for (const int answer : draws.likertAnswers(widths.items, factors)) {
        result.numbers.push_back(answer == 0 ? std::numeric_limits<double>::quiet_NaN() : answer);
    }
    for (std::size_t i = 0; i < widths.scores; ++i) {
        result.numbers.push_back(std::round((50.0 + 10.0 * draws.normal()) * thousandths) /
                                 thousandths);
    }
    for (std::size_t i = 0; i < widths.texts; ++i) {
        result.texts.push_back(places[draws.below(places.size())]);
    }
    return result;
}

std::vector<std::string> names(const Widths& widths) {
    std::vector<std::string> result;
    const auto add = [&result](const std::string& stem, std::size_t count) {
        for (std::size_t i = 1; i <= count; ++i) {
            result.push_back(stem + NumberText::integer(static_cast<std::int64_t>(i)));
        }
    };
    add("q", widths.items);
    add("score", widths.scores);
    add("txt", widths.texts);
    return result;
}

bool isText(std::size_t column) {
    return column >= studyWidths.items + studyWidths.scores;
}

std::string systemFileHead(std::size_t rows, bool compressed) {
    const std::vector<std::string> variables = names(studyWidths);
    std::string head = "$FL2" + filled("@(#) SPSS DATA FILE", 60, ' ') + bytesOf(2) +
                       bytesOf(static_cast<int>(variables.size())) + bytesOf(compressed ? 1 : 0) +
                       bytesOf(0) + bytesOf(static_cast<int>(rows)) + bytesOf(100.0) + "01 Jan 24" +
                       "12:00:00" + std::string(67, ' ');
    for (std::size_t column = 0; column < variables.size(); ++column) {
        const int format = isText(column) ? 1 << 16 | 8 << 8 : 5 << 16 | 8 << 8 | 2;
        head += bytesOf(2) + bytesOf(isText(column) ? 8 : 0) + bytesOf(1) + bytesOf(0) +
                bytesOf(format) + bytesOf(format) + filled(variables[column], 8, ' ') + bytesOf(8) +
                filled("Item", 8, ' ');
    }
    for (std::size_t item = 1; item <= studyWidths.items; ++item) {
        head += bytesOf(3) + bytesOf(static_cast<int>(answerLabels.size()));
        for (std::size_t i = 0; i < answerLabels.size(); ++i) {
            const std::size_t size = answerLabels[i].size();
            head += bytesOf(static_cast<double>(i + 1)) + static_cast<char>(size) +
                    filled(answerLabels[i], (size + 8) / 8 * 8 - 1, ' ');
        }
        head += bytesOf(4) + bytesOf(1) + bytesOf(static_cast<int>(item));
    }
    return head + bytesOf(7) + bytesOf(20) + bytesOf(1) + bytesOf(5) + "UTF-8" + bytesOf(999) +
           bytesOf(0);
}

/// Gathers commands by eight, each block before its literals.
class CommandWriter {
public:
    explicit CommandWriter(std::ostream& stream) : stream_(stream) {}

    void put(char command, const std::string& literal = {}) {
        commands_ += command;
        literals_ += literal;
        if (commands_.size() == 8) {
            flush();
        }
    }
    void flush() {
        stream_ << filled(commands_, 8, '\0') << literals_;
        commands_.clear();
        literals_.clear();
    }

private:
    std::ostream& stream_;
    std::string commands_;
    std::string literals_;
};

void writeCompressedNumber(CommandWriter& writer, double number) {
    constexpr double bias = 100.0;
    const bool isSmall = number == std::trunc(number) && number >= -99.0 && number <= 151.0;
    if (std::isnan(number)) {
        writer.put('\xFF');
    } else if (isSmall) {
        writer.put(static_cast<char>(static_cast<unsigned char>(number + bias)));
    } else {
        writer.put('\xFD', bytesOf(number));
    }
}

void writeCompressed(std::ostream& stream, Draws& draws, std::size_t rows) {
    stream << systemFileHead(rows, true);
    CommandWriter writer(stream);
    for (std::size_t row = 0; row < rows; ++row) {
        const Respondent each = respondent(draws, studyWidths);
        for (const double number : each.numbers) {
            writeCompressedNumber(writer, number);
        }
        for (const std::string_view text : each.texts) {
            writer.put('\xFD', filled(text, textWidth, ' '));
        }
    }
    writer.put('\xFC');
    writer.flush();
}

void writePlain(std::ostream& stream, Draws& draws, std::size_t rows) {
    stream << systemFileHead(rows, false);
    for (std::size_t row = 0; row < rows; ++row) {
        const Respondent each = respondent(draws, studyWidths);
        for (const double number : each.numbers) {
            stream << bytesOf(std::isnan(number) ? std::numeric_limits<double>::lowest() : number);
        }
        for (const std::string_view text : each.texts) {
            stream << filled(text, textWidth, ' ');
        }
    }
}

std::string dataFileRows(Draws& draws, std::size_t rows) {
    const double missing = std::bit_cast<double>(std::uint64_t{0x7FE0010000000000});
    std::string data;
    data.reserve(rows * 8 * (studyWidths.items + studyWidths.scores + studyWidths.texts));
    for (std::size_t row = 0; row < rows; ++row) {
        const Respondent each = respondent(draws, studyWidths);
        for (const double number : each.numbers) {
            data += bytesOf(std::isnan(number) ? missing : number);
        }
        for (const std::string_view text : each.texts) {
            data += filled(text, textWidth, '\0');
        }
    }
    return data;
}

void writeDataFile(std::ostream& stream, Draws& draws, std::size_t rows) {
    constexpr std::uint16_t doubleCode = 65526;
    const std::vector<std::string> variables = names(studyWidths);
    std::string types;
    std::string fields;
    std::string formats;
    for (std::size_t column = 0; column < variables.size(); ++column) {
        types += bytesOf(isText(column) ? static_cast<std::uint16_t>(textWidth) : doubleCode);
        fields += filled(variables[column], 129, '\0');
        formats += filled(isText(column) ? "%8s" : "%9.0g", 57, '\0');
    }
    const std::string sortOrder(2 * (variables.size() + 1), '\0');
    const std::string labelNames(variables.size() * 129, '\0');
    const std::string labels(variables.size() * 321, '\0');
    const std::string data = dataFileRows(draws, rows);
    const std::string head =
        "<stata_dta><header><release>118</release><byteorder>LSF</byteorder><K>" +
        bytesOf(static_cast<std::uint16_t>(variables.size())) + "</K><N>" +
        bytesOf(std::uint64_t{rows}) + "</N><label>" + bytesOf(std::uint16_t{0}) +
        "</label><timestamp>" + std::string(1, '\0') + "</timestamp></header>";
    const std::array<std::pair<std::string, const std::string*>, 10> sections = {
        {{"variable_types", &types},
         {"varnames", &fields},
         {"sortlist", &sortOrder},
         {"formats", &formats},
         {"value_label_names", &labelNames},
         {"variable_labels", &labels},
         {"characteristics", nullptr},
         {"data", &data},
         {"strls", nullptr},
         {"value_labels", nullptr}}};
    std::uint64_t at = head.size() + 5 + 14 * 8 + 6;
    std::string map = bytesOf(std::uint64_t{0}) + bytesOf(std::uint64_t{head.size()});
    for (const auto& [name, content] : sections) {
        map += bytesOf(at);
        at += 2 * name.size() + 5 + (content == nullptr ? 0 : content->size());
    }
    map += bytesOf(at) + bytesOf(at + 12);
    stream << head << "<map>" << map << "</map>";
    for (const auto& [name, content] : sections) {
        stream << '<' << name << '>' << (content == nullptr ? std::string() : *content) << "</"
               << name << '>';
    }
    stream << "</stata_dta>";
}

constexpr std::string_view contentTypes =
    R"(<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">)"
    R"(<Default Extension="xml" ContentType="application/xml"/>)"
    R"(<Default Extension="rels" )"
    R"(ContentType="application/vnd.openxmlformats-package.relationships+xml"/>)"
    R"(<Override PartName="/xl/workbook.xml" ContentType=)"
    R"("application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml"/></Types>)";
constexpr std::string_view packageParts =
    R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)"
    R"(<Relationship Id="r1" Target="xl/workbook.xml" Type=)"
    R"("http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument"/>)"
    R"(</Relationships>)";
constexpr std::string_view workbook =
    R"(<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" )"
    R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">)"
    R"(<sheets><sheet name="Data" sheetId="1" r:id="r1"/></sheets></workbook>)";
constexpr std::string_view workbookParts =
    R"(<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)"
    R"(<Relationship Id="r1" Target="worksheets/sheet1.xml" Type=)"
    R"("http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet"/>)"
    R"(<Relationship Id="r2" Target="sharedStrings.xml" Type=)"
    R"("http://schemas.openxmlformats.org/officeDocument/2006/relationships/sharedStrings"/>)"
    R"(</Relationships>)";
constexpr std::string_view sheetSpace =
    R"( xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main")";

/// The worksheet's XML; texts go into `strings`, in the order of their numbers.
std::string worksheet(Draws& draws, std::size_t rows, std::vector<std::string>& strings) {
    std::map<std::string, std::string, std::less<>> numberOf;
    const auto shared = [&](std::string_view text) {
        const auto known = numberOf.find(text);
        if (known != numberOf.end()) {
            return known->second;
        }
        strings.emplace_back(text);
        const auto index = static_cast<std::int64_t>(strings.size() - 1);
        return numberOf[std::string(text)] = NumberText::integer(index);
    };
    std::string xml = "<worksheet" + std::string(sheetSpace) + "><sheetData>";
    std::string row;
    const auto cell = [&](std::size_t column, std::string_view type, const std::string& value) {
        const char letter = static_cast<char>('A' + static_cast<char>(column));
        xml.append("<c r=\"").append(1, letter).append(row).append("\" t=\"").append(type);
        xml.append("\"><v>").append(value).append("</v></c>");
    };
    for (std::size_t number = 1; number <= rows + 1; ++number) {
        row = NumberText::integer(static_cast<std::int64_t>(number));
        xml += "<row r=\"" + row + "\">";
        std::size_t column = 0;
        if (number == 1) {
            for (const std::string& name : names(workbookWidths)) {
                cell(column++, "s", shared(name));
            }
        } else {
            const Respondent each = respondent(draws, workbookWidths);
            for (const double value : each.numbers) {
                if (!std::isnan(value)) {
                    cell(column, "n", NumberText::shortest(value));
                }
                ++column;
            }
            for (const std::string_view text : each.texts) {
                cell(column++, "s", shared(text));
            }
        }
        xml += "</row>";
    }
    return xml + "</sheetData></worksheet>";
}

std::string deflated(const std::string& bytes) {
    libdeflate_compressor* compressor = libdeflate_alloc_compressor(6);
    std::string packed(libdeflate_deflate_compress_bound(compressor, bytes.size()), '\0');
    packed.resize(libdeflate_deflate_compress(compressor, bytes.data(), bytes.size(), packed.data(),
                                              packed.size()));
    libdeflate_free_compressor(compressor);
    return packed;
}

void writeArchive(std::ostream& stream,
                  const std::vector<std::pair<std::string, std::string>>& parts) {
    std::string archive;
    std::string directory;
    for (const auto& [name, content] : parts) {
        const std::string packed = deflated(content);
        const std::string common = bytesOf(std::uint16_t{8}) + bytesOf(std::uint64_t{0}) +
                                   bytesOf(static_cast<std::uint32_t>(packed.size())) +
                                   bytesOf(static_cast<std::uint32_t>(content.size())) +
                                   bytesOf(static_cast<std::uint16_t>(name.size())) +
                                   bytesOf(std::uint16_t{0});
        directory += "PK\1\2" + bytesOf(std::uint16_t{20}) + bytesOf(std::uint32_t{20}) + common +
                     std::string(10, '\0') + bytesOf(static_cast<std::uint32_t>(archive.size())) +
                     name;
        archive += "PK\3\4" + bytesOf(std::uint32_t{20}) + common + name + packed;
    }
    const auto count = static_cast<std::uint16_t>(parts.size());
    stream << archive << directory << "PK\5\6" << bytesOf(std::uint32_t{0}) << bytesOf(count)
           << bytesOf(count) << bytesOf(static_cast<std::uint32_t>(directory.size()))
           << bytesOf(static_cast<std::uint32_t>(archive.size())) << bytesOf(std::uint16_t{0});
}

void writeWorkbook(std::ostream& stream, Draws& draws, std::size_t rows) {
    std::vector<std::string> strings;
    const std::string sheet = worksheet(draws, rows, strings);
    std::string shared = "<sst" + std::string(sheetSpace) + ">";
    for (const std::string& text : strings) {
        shared += "<si><t>" + text + "</t></si>";
    }
    const std::string start = R"(<?xml version="1.0" encoding="UTF-8"?>)";
    writeArchive(stream, {{"[Content_Types].xml", start + std::string(contentTypes)},
                          {"_rels/.rels", start + std::string(packageParts)},
                          {"xl/workbook.xml", start + std::string(workbook)},
                          {"xl/_rels/workbook.xml.rels", start + std::string(workbookParts)},
                          {"xl/worksheets/sheet1.xml", start + sheet},
                          {"xl/sharedStrings.xml", start + shared + "</sst>"}});
}

struct Recipe {
    std::string_view stem;
    std::string_view ending;
    std::uint64_t seed = 0;
    void (*write)(std::ostream&, Draws&, std::size_t rows) = nullptr;
};

constexpr std::array<Recipe, 4> recipes = {{{"stat_", "_byte.sav", 106, writeCompressed},
                                            {"stat_", "_none.sav", 106, writePlain},
                                            {"stat_", ".dta", 106, writeDataFile},
                                            {"xlsx_", ".xlsx", 107, writeWorkbook}}};

}  // namespace

bool write(std::string_view name, const std::filesystem::path& target) {
    const auto* recipe = std::ranges::find_if(recipes, [name](const Recipe& each) {
        return name.starts_with(each.stem) && name.ends_with(each.ending);
    });
    if (recipe == recipes.end()) {
        return false;
    }
    name.remove_prefix(recipe->stem.size());
    name.remove_suffix(recipe->ending.size());
    const std::optional<double> rows = NumberText::parse(name);
    if (!rows) {
        return false;
    }
    std::ofstream stream(target, std::ios::binary);
    Draws draws(recipe->seed);
    recipe->write(stream, draws, static_cast<std::size_t>(*rows));
    return true;
}

}  // namespace sorvane::StudyFiles
