#include "Benchmarks/ClusteredFiles.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "Benchmarks/CsvWriter.h"
#include "Benchmarks/Draws.h"

namespace sorvane::ClusteredFiles {

namespace {

/// How many clusters of the one and of the other factor a file has.
struct Size {
    std::string_view name;
    std::size_t rows = 0;
    std::size_t clusters = 0;
    std::size_t others = 0;
};

std::vector<double> normals(Draws& draws, std::size_t count, double scale) {
    std::vector<double> result(count);
    for (double& value : result) {
        value = scale * draws.normal();
    }
    return result;
}

void writeHeaders(CsvWriter& csv, std::initializer_list<std::string_view> names) {
    for (const std::string_view name : names) {
        csv.cell(name);
    }
    csv.endRow();
}

/// Pupils in schools that differ in intercept and, unless it is 0, in the effect of x1.
void writeSchools(CsvWriter& csv, Draws& draws, const Size& size, double slope) {
    writeHeaders(csv, {"y", "x1", "x2", "x3", "school"});
    const std::vector<double> intercepts = normals(draws, size.clusters, 0.7);
    const std::vector<double> slopes = normals(draws, size.clusters, 0.35);
    const std::vector<double> levels = normals(draws, size.clusters, 1.0);
    for (std::size_t i = 0; i < size.rows; ++i) {
        const std::size_t school = draws.below(size.clusters);
        const double x1 = draws.normal();
        const double x2 = draws.share() < 0.5 ? 1.0 : 0.0;
        const double x3 = draws.normal() + levels[school];
        const double ownSlope = slope * (0.3 * intercepts[school] + slopes[school]);
        const double y =
            1.0 + (0.5 + ownSlope) * x1 - 0.3 * x2 + 0.2 * x3 + intercepts[school] + draws.normal();
        for (const double value : {y, x1, x2, x3}) {
            csv.cell(rounded(value, sixDecimals));
        }
        csv.cell("s" + std::to_string(school));
        csv.endRow();
    }
}

void writeIntercepts(CsvWriter& csv, Draws& draws, const Size& size) {
    writeSchools(csv, draws, size, 0.0);
}

void writeSlopes(CsvWriter& csv, Draws& draws, const Size& size) {
    writeSchools(csv, draws, size, 1.0);
}

void writeAnswers(CsvWriter& csv, Draws& draws, const Size& size) {
    writeHeaders(csv, {"y", "x1", "x2", "subject", "item"});
    const std::vector<double> ofSubject = normals(draws, size.clusters, 0.8);
    const std::vector<double> ofItem = normals(draws, size.others, 0.5);
    for (std::size_t i = 0; i < size.rows; ++i) {
        const std::size_t subject = draws.below(size.clusters);
        const std::size_t item = draws.below(size.others);
        const double x1 = draws.normal();
        const double x2 = draws.normal();
        const double y =
            1.0 + 0.5 * x1 - 0.2 * x2 + ofSubject[subject] + ofItem[item] + draws.normal();
        for (const double value : {y, x1, x2}) {
            csv.cell(rounded(value, sixDecimals));
        }
        csv.cell("p" + std::to_string(subject));
        csv.cell("i" + std::to_string(item));
        csv.endRow();
    }
}

/// Patients who are cured or not.
void writeCures(CsvWriter& csv, Draws& draws, const Size& size) {
    writeHeaders(csv, {"y", "x1", "x2", "clinic"});
    const std::vector<double> ofClinic = normals(draws, size.clusters, 1.0);
    for (std::size_t i = 0; i < size.rows; ++i) {
        const std::size_t clinic = i % size.clusters;
        const double x1 = draws.normal();
        const double x2 = draws.share() < 0.5 ? 1.0 : 0.0;
        const double eta = -0.2 + 0.6 * x1 - 0.4 * x2 + ofClinic[clinic];
        const double y = draws.share() < 1.0 / (1.0 + std::exp(-eta)) ? 1.0 : 0.0;
        for (const double value : {y, x1, x2}) {
            csv.cell(rounded(value, sixDecimals));
        }
        csv.cell("c" + std::to_string(clinic));
        csv.endRow();
    }
}

struct Recipe {
    Size size;
    std::uint64_t seed = 0;
    void (*write)(CsvWriter&, Draws&, const Size&) = nullptr;
};

constexpr std::array<Recipe, 11> recipes = {{
    {{"lmm_ri_1e4.csv", 10000, 100}, 110, writeIntercepts},
    {{"lmm_ri_1e5.csv", 100000, 1000}, 110, writeIntercepts},
    {{"lmm_rs_2e3.csv", 2000, 50}, 110, writeSlopes},
    {{"lmm_rs_1e4.csv", 10000, 200}, 110, writeSlopes},
    {{"lmm_huge_1e4.csv", 10000, 5}, 110, writeSlopes},
    {{"lmm_huge_1e5.csv", 100000, 5}, 110, writeSlopes},
    {{"lmm_cross_5e3.csv", 5000, 100, 50}, 113, writeAnswers},
    {{"lmm_cross_2e4.csv", 20000, 400, 100}, 113, writeAnswers},
    {{"lmm_cross_6e4.csv", 60000, 2000, 500}, 113, writeAnswers},
    {{"glmm_2e3.csv", 2000, 100}, 114, writeCures},
    {{"glmm_1e4.csv", 10000, 500}, 114, writeCures},
}};

}  // namespace

bool write(std::string_view name, const std::filesystem::path& target) {
    const auto* recipe = std::ranges::find_if(
        recipes, [name](const Recipe& each) { return each.size.name == name; });
    if (recipe == recipes.end()) {
        return false;
    }
    CsvWriter csv(target);
    Draws draws(recipe->seed);
    recipe->write(csv, draws, recipe->size);
    return true;
}

}  // namespace sorvane::ClusteredFiles
