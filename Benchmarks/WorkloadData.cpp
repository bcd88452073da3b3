#include "Benchmarks/WorkloadData.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Benchmarks/ClusteredFiles.h"
#include "Benchmarks/CsvWriter.h"
#include "Benchmarks/Draws.h"
#include "Benchmarks/StudyFiles.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::WorkloadData {

namespace {

constexpr double fiveDecimals = 1e5;
constexpr double fourDecimals = 1e4;
constexpr double threeDecimals = 1e3;
constexpr double twoDecimals = 100.0;
constexpr double oneDecimal = 10.0;

/// One row of answers, those missing blank.
void writeLikertCells(CsvWriter& csv, Draws& draws, std::size_t items, std::size_t factorCount) {
    for (const int answer : draws.likertAnswers(items, factorCount)) {
        const char digit = static_cast<char>('0' + answer);
        csv.cell(answer == 0 ? std::string_view() : std::string_view(&digit, 1));
    }
}

void writeLikert(CsvWriter& csv, Draws& draws, std::size_t rows) {
    csv.numberedHeaders("q", 20);
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        writeLikertCells(csv, draws, 20, 1);
        csv.endRow();
    }
}

/// Here the size is the number of columns.
void writeWide(CsvWriter& csv, Draws& draws, std::size_t columns) {
    csv.numberedHeaders("q", columns);
    csv.endRow();
    for (std::size_t i = 0; i < 2000; ++i) {
        writeLikertCells(csv, draws, columns, 10);
        csv.endRow();
    }
}

void writeRegression(CsvWriter& csv, Draws& draws, std::size_t rows) {
    csv.cell("y");
    csv.cell("yb");
    csv.numberedHeaders("x", 10);
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        std::array<double, 10> x{};
        double eta = 0.0;
        for (std::size_t j = 0; j < x.size(); ++j) {
            x[j] = draws.normal();
            eta += (static_cast<double>(j) - 5.0) / 10.0 * x[j];
        }
        csv.cell(rounded(2.0 + eta + draws.normal(), sixDecimals));
        csv.cell(draws.share() < 1.0 / (1.0 + std::exp(0.3 - eta)) ? "1" : "0");
        for (const double value : x) {
            csv.cell(rounded(value, sixDecimals));
        }
        csv.endRow();
    }
}

std::string sentence(Draws& draws, std::size_t fewest, std::size_t most) {
    static constexpr std::array<std::string_view, 26> words = {
        "the",       "course",    "was",     "clear",    "but", "slow",       "I",
        "would",     "like",      "more",    "examples", "and", "less",       "reading",
        "caf\u00e9", "\u00fcber", "teacher", "helped",   "me",  "understand", "statistics",
        "in",        "practice",  "not",     "sure",     "why"};
    std::string text;
    const std::size_t count = fewest + draws.below(most - fewest + 1);
    for (std::size_t i = 0; i < count; ++i) {
        text += words[draws.below(words.size())];
        const double kind = draws.share();
        text += kind < 0.85 ? " " : kind < 0.95 ? ", " : kind < 0.98 ? " \"quoted\" " : "\n";
    }
    return text;
}

void writeText(CsvWriter& csv, Draws& draws, std::size_t rows) {
    static constexpr std::array<std::string_view, 4> groups = {"North", "South", "East", "West"};
    csv.cell("respondent");
    csv.cell("group");
    csv.numberedHeaders("q", 4);
    csv.cell("comment_short");
    csv.cell("comment_long");
    csv.endRow();
    for (std::size_t i = 1; i <= rows; ++i) {
        csv.cell(std::to_string(i));
        csv.quotedCell(groups[draws.below(groups.size())]);
        writeLikertCells(csv, draws, 4, 1);
        csv.quotedCell(sentence(draws, 3, 12));
        csv.quotedCell(sentence(draws, 15, 45));
        csv.endRow();
    }
}

void writeCorrelated(CsvWriter& csv, Draws& draws, std::size_t rows) {
    csv.cell("x");
    csv.cell("y");
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        const double x = draws.normal();
        csv.cell(rounded(x, sixDecimals));
        csv.cell(rounded(0.4 * x + draws.normal(), oneDecimal));
        csv.endRow();
    }
}

/// Five groups of unequal size whose means lie up to a fifth of a deviation apart.
void writeGroups(CsvWriter& csv, Draws& draws, std::size_t rows) {
    struct Group {
        std::string_view name;
        double upTo;
        double shift;
    };
    static constexpr std::array<Group, 5> groups = {{{"Control", 0.3, 0.0},
                                                     {"A", 0.55, 0.5},
                                                     {"B", 0.75, 1.0},
                                                     {"C", 0.9, 0.0},
                                                     {"D", 1.0, 2.0}}};
    csv.cell("g");
    csv.cell("y");
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        const double share = draws.share();
        const auto group =
            std::ranges::find_if(groups, [share](const Group& each) { return share <= each.upTo; });
        csv.cell(group->name);
        csv.cell(rounded(50.0 + group->shift + 10.0 * draws.normal(), twoDecimals));
        csv.endRow();
    }
}

/// Rows of items that are all answered.
void writeAnswered(
    CsvWriter& csv, Draws& draws, std::size_t rows, std::size_t items, std::size_t factorCount) {
    csv.numberedHeaders("q", items);
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        for (const int answer : draws.likertAnswers(items, factorCount)) {
            const char digit = static_cast<char>('0' + std::max(answer, 1));
            csv.cell(std::string_view(&digit, 1));
        }
        csv.endRow();
    }
}

void writeFactors(CsvWriter& csv, Draws& draws, std::size_t rows) {
    writeAnswered(csv, draws, rows, 30, 5);
}

void writeManyItems(CsvWriter& csv, Draws& draws, std::size_t rows) {
    writeAnswered(csv, draws, rows, 200, 10);
}

/// Cases around five centres.
void writeClusters(CsvWriter& csv, Draws& draws, std::size_t rows, std::size_t variables) {
    std::vector<double> centres(5 * variables);
    for (double& coordinate : centres) {
        coordinate = 2.0 * draws.normal();
    }
    csv.numberedHeaders("V", variables);
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        const std::size_t centre = draws.below(5) * variables;
        for (std::size_t j = 0; j < variables; ++j) {
            csv.cell(rounded(centres[centre + j] + draws.normal(), fiveDecimals));
        }
        csv.endRow();
    }
}

void writeTreeCases(CsvWriter& csv, Draws& draws, std::size_t rows) {
    writeClusters(csv, draws, rows, 6);
}

void writeMeansCases(CsvWriter& csv, Draws& draws, std::size_t rows) {
    writeClusters(csv, draws, rows, 10);
}

/// Times to a tenth, three in four of which end in an event, in three groups.
void writeSurvival(CsvWriter& csv, Draws& draws, std::size_t rows) {
    static constexpr std::array<double, 5> effects = {0.5, -0.3, 0.2, 0.0, 0.1};
    static constexpr std::array<std::string_view, 3> groups = {"a", "b", "c"};
    csv.cell("time");
    csv.cell("event");
    csv.cell("grp");
    csv.numberedHeaders("x", effects.size());
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        std::array<double, effects.size()> x{};
        double eta = 0.0;
        for (std::size_t j = 0; j < x.size(); ++j) {
            x[j] = draws.normal();
            eta += effects[j] * x[j];
        }
        const double toEvent = -100.0 * std::log(draws.share()) / std::exp(eta);
        const double toCensoring = 300.0 * draws.share();
        csv.cell(rounded(std::ceil(10.0 * std::min(toEvent, toCensoring)) / 10.0, oneDecimal));
        csv.cell(toEvent <= toCensoring ? "1" : "0");
        csv.cell(groups[draws.below(groups.size())]);
        for (const double value : x) {
            csv.cell(rounded(value, sixDecimals));
        }
        csv.endRow();
    }
}

/// Four hidden classes that differ in six numbers, six yes-or-no answers and six letters.
void writeMixture(CsvWriter& csv, Draws& draws, std::size_t rows) {
    static constexpr std::array<double, 4> upTo = {0.4, 0.7, 0.9, 1.0};
    static constexpr std::array<std::array<double, 6>, 4> means = {
        {{0, 0, 0, 0, 0, 0}, {2, 2, 0, 0, 1, 1}, {-2, 0, 2, 1, 0, -1}, {0, -2, -2, 2, 2, 0}}};
    static constexpr std::array<double, 4> deviations = {1.0, 0.8, 1.2, 0.9};
    static constexpr std::array<double, 4> yesShares = {0.9, 0.8, 0.2, 0.1};
    csv.numberedHeaders("v", 6);
    csv.numberedHeaders("b", 6);
    csv.numberedHeaders("t", 6);
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        const auto hidden =
            static_cast<std::size_t>(std::ranges::lower_bound(upTo, draws.share()) - upTo.begin());
        for (const double mean : means[hidden]) {
            csv.cell(rounded(mean + deviations[hidden] * draws.normal(), fiveDecimals));
        }
        std::array<std::size_t, 6> answers{};
        for (std::size_t& answer : answers) {
            answer = draws.share() < yesShares[hidden] ? 1 : 0;
            csv.cell(answer == 1 ? "1" : "0");
        }
        for (const std::size_t answer : answers) {
            csv.cell(std::string_view("abc").substr(answer + (draws.share() < 0.2 ? 1 : 0), 1));
        }
        csv.endRow();
    }
}

/// Items of three or of ten factors that have a correlation of 0.4, each factor's together.
void writeFactorItems(CsvWriter& csv, Draws& draws, std::size_t factorCount) {
    constexpr std::size_t few = 3;
    const std::size_t itemsPerFactor = factorCount == few ? 3 : 5;
    const std::size_t rows = factorCount == few ? 500 : 1000;
    const double commonShare = std::sqrt(0.4);
    csv.numberedHeaders("q", factorCount * itemsPerFactor);
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        const double common = commonShare * draws.normal();
        for (std::size_t factor = 0; factor < factorCount; ++factor) {
            const double score = common + std::sqrt(0.6) * draws.normal();
            for (std::size_t item = 0; item < itemsPerFactor; ++item) {
                csv.cell(rounded(0.75 * score + 0.66 * draws.normal(), sixDecimals));
            }
        }
        csv.endRow();
    }
}

/// x, m, y and a covariate c1.
void writeMediation(CsvWriter& csv, Draws& draws, std::size_t rows) {
    for (const std::string_view name : {"x", "m", "y", "c1"}) {
        csv.cell(name);
    }
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        const double x = draws.normal();
        const double c1 = draws.normal();
        const double m = 0.4 * x + 0.2 * c1 + draws.normal();
        const double y = 0.3 * m + 0.1 * x + 0.2 * c1 + draws.normal();
        for (const double value : {x, m, y, c1}) {
            csv.cell(rounded(value, sixDecimals));
        }
        csv.endRow();
    }
}

/// Ten numbers on one factor, of which the first six now and then have none.
void writeIncomplete(CsvWriter& csv, Draws& draws, std::size_t rows) {
    constexpr std::size_t columns = 10;
    constexpr std::size_t incomplete = 6;
    constexpr double missingShare = 0.15;
    csv.numberedHeaders("v", columns);
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        const double factor = draws.normal();
        for (std::size_t j = 0; j < columns; ++j) {
            const std::string text = rounded(0.6 * factor + 0.8 * draws.normal(), fourDecimals);
            const bool isMissing = j < incomplete && draws.share() < missingShare;
            csv.cell(isMissing ? std::string_view() : std::string_view(text));
        }
        csv.endRow();
    }
}

/// A sample of fifty strata with ten units each, and 200 half-sample weights.
void writeSample(CsvWriter& csv, Draws& draws, std::size_t rows) {
    constexpr std::size_t replicates = 200;
    for (const std::string_view name : {"w", "stratum", "psu", "y1", "y2"}) {
        csv.cell(name);
    }
    csv.numberedHeaders("rw", replicates);
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        const double weight = std::round((0.5 + 2.5 * draws.share()) * fourDecimals) / fourDecimals;
        const std::size_t stratum = draws.below(50) + 1;
        const std::string name = std::to_string(stratum);
        csv.cell(NumberText::shortest(weight));
        csv.cell("h" + name);
        csv.cell(name + "_" + std::to_string(draws.below(10) + 1));
        csv.cell(rounded(50.0 + 10.0 * draws.normal() + static_cast<double>(stratum) / 10.0,
                         threeDecimals));
        csv.cell(draws.share() < 0.4 ? "1" : "0");
        for (std::size_t r = 0; r < replicates; ++r) {
            csv.cell(rounded(weight * (draws.below(2) == 0 ? 0.5 : 1.5), threeDecimals));
        }
        csv.endRow();
    }
}

/// A study of forty items, six scores and four groupings.
void writeProject(CsvWriter& csv, Draws& draws, std::size_t rows) {
    static constexpr std::array<std::string_view, 4> places = {"urban", "rural", "suburb",
                                                               "abroad"};
    csv.numberedHeaders("q", 40);
    csv.numberedHeaders("score", 6);
    csv.numberedHeaders("txt", 4);
    csv.endRow();
    for (std::size_t i = 0; i < rows; ++i) {
        writeLikertCells(csv, draws, 40, 4);
        for (int score = 0; score < 6; ++score) {
            csv.cell(rounded(50.0 + 10.0 * draws.normal(), threeDecimals));
        }
        for (int text = 0; text < 4; ++text) {
            csv.cell(places[draws.below(places.size())]);
        }
        csv.endRow();
    }
}

struct Recipe {
    std::string_view stem;
    std::uint64_t seed = 0;
    void (*write)(CsvWriter&, Draws&, std::size_t size) = nullptr;
};

constexpr std::array<Recipe, 17> recipes = {{{"likert", 101, writeLikert},
                                             {"reg", 102, writeRegression},
                                             {"anova", 103, writeGroups},
                                             {"wide", 104, writeWide},
                                             {"text", 105, writeText},
                                             {"corr", 108, writeCorrelated},
                                             {"efa", 109, writeFactors},
                                             {"items", 110, writeManyItems},
                                             {"mix", 116, writeMixture},
                                             {"cfa", 115, writeFactorItems},
                                             {"med", 117, writeMediation},
                                             {"mice", 118, writeIncomplete},
                                             {"hclust", 119, writeTreeCases},
                                             {"kmeans", 120, writeMeansCases},
                                             {"surv", 121, writeSurvival},
                                             {"svy", 122, writeSample},
                                             {"proj", 123, writeProject}}};

/// The recipe and the size that a name such as "likert_1e6.csv" asks for; "cfa_3x9.csv" has 3.
std::pair<const Recipe*, std::size_t> recipeFor(std::string_view name) {
    const std::size_t bar = name.find('_');
    const std::size_t dot = name.rfind(".csv");
    if (bar < dot && dot != std::string_view::npos) {
        const std::string_view sizes = name.substr(bar + 1, dot - bar - 1);
        const auto size = NumberText::parse(sizes.substr(0, sizes.find('x')));
        const auto recipe = std::ranges::find(recipes, name.substr(0, bar), &Recipe::stem);
        if (recipe != recipes.end() && size) {
            return {&*recipe, static_cast<std::size_t>(*size)};
        }
    }
    throw std::runtime_error("There is no recipe for the file " + std::string(name) + ".");
}

void make(std::string_view name, const std::filesystem::path& target) {
    // Written under another name first, so that a broken run leaves no half a file.
    std::filesystem::path unfinished = target;
    unfinished += ".part";
    if (!StudyFiles::write(name, unfinished) && !ClusteredFiles::write(name, unfinished)) {
        const auto [recipe, size] = recipeFor(name);
        CsvWriter csv(unfinished);
        Draws draws(recipe->seed);
        recipe->write(csv, draws, size);
    }
    std::filesystem::rename(unfinished, target);
}

}  // namespace

std::filesystem::path file(std::string_view name) {
    if (const char* given = std::getenv("PERF_DATA")) {
        std::filesystem::path found = std::filesystem::path(given) / name;
        if (std::filesystem::exists(found)) {
            return found;
        }
    }
    const std::filesystem::path folder = "bench-data";
    std::filesystem::path target = folder / name;
    if (!std::filesystem::exists(target)) {
        std::filesystem::create_directories(folder);
        make(name, target);
    }
    return target;
}

}  // namespace sorvane::WorkloadData
