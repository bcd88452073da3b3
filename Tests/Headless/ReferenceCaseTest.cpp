#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneCore/Import/SpreadsheetImporter.h"
#include "SorvaneMac/Headless/ProcedureTable.h"
#include "Tests/Support/Closeness.h"

/// Runs every case of Tests/Reference/cases through the procedure table.
///
/// A case names its procedure, its data file and its arguments; `expected` holds fields of the
/// result that must agree. A procedure named "A.x/y" stands for A.x and A.y on the same arguments,
/// whose results are expected under "x" and "y". Under "fixedEffectsByDFMethod" stand the fixed
/// effects that each setting of "dfMethod" must give.
namespace sorvane {
namespace {

const std::filesystem::path references = SORVANE_SOURCE_DIR "/Tests/Reference";

class ReferenceCase : public testing::TestWithParam<std::filesystem::path> {
protected:
    ReferenceCase() : case_(Json::parse(std::ifstream(GetParam()))) {}

    Json call(const std::string& name, const Json& settings = Json::object()) const {
        Json given = case_["inputs"];
        given.erase("procedure");
        given.update(settings);
        std::optional<ImportedDataset> dataset;
        if (!case_["data"].is_null()) {
            dataset = SpreadsheetImporter().importData(references / "data" /
                                                       case_["data"].get<std::string>());
        }
        const Procedure* procedure = ProcedureTable::find(name);
        EXPECT_NE(procedure, nullptr) << name;
        return procedure ? procedure->call({std::move(given), std::move(dataset)}) : Json();
    }

    test::Tolerance tolerance(const std::string& field) const {
        const Json& table = case_["tolerance"];
        const Json& entry = table.contains(field) ? table[field] : table["*"];
        return {.relative = entry.value("rel", 0.0), .absolute = entry.value("abs", 0.0)};
    }

    void expectAgreement(const Json& got,
                         const Json& expected,
                         const std::string& place,
                         const std::string& field) const {
        if (expected.is_null()) {
            EXPECT_TRUE(got.is_null() || got == "nan") << place << " is " << got;
        } else if (expected.is_number()) {
            ASSERT_TRUE(got.is_number()) << place << " is " << got;
            EXPECT_TRUE(test::closeTo(got.get<double>(), expected.get<double>(), tolerance(field)))
                << place;
        } else if (expected.is_object() &&
                   (expected.contains("atLeast") || expected.contains("atMost"))) {
            ASSERT_TRUE(got.is_number()) << place << " is " << got;
            EXPECT_GE(got.get<double>(), expected.value("atLeast", got.get<double>())) << place;
            EXPECT_LE(got.get<double>(), expected.value("atMost", got.get<double>())) << place;
        } else if (expected.is_object()) {
            for (const auto& [key, value] : expected.items()) {
                expectAgreement(got.is_object() && got.contains(key) ? got[key] : Json(), value,
                                place + "." + key, key);
            }
        } else if (expected.is_array()) {
            ASSERT_TRUE(got.is_array() && got.size() == expected.size()) << place << " is " << got;
            for (std::size_t i = 0; i < expected.size(); ++i) {
                expectAgreement(counterpart(got, expected[i], i), expected[i],
                                place + "[" + std::to_string(i) + "]", field);
            }
        } else {
            EXPECT_EQ(got, expected) << place;
        }
    }

    /// The entry of a list that stands against an expected one: the path of the same ends in a list
    /// of paths, where a covariance may name them either way round, else the one at its position.
    static Json counterpart(const Json& got, const Json& expected, std::size_t position) {
        if (!expected.is_object() || !expected.contains("op")) {
            return got[position];
        }
        for (const Json& entry : got) {
            if (entry["op"] != expected["op"]) {
                continue;
            }
            if (entry["lhs"] == expected["lhs"] && entry["rhs"] == expected["rhs"]) {
                return entry;
            }
            if (entry["op"] == "~~" && entry["lhs"] == expected["rhs"] &&
                entry["rhs"] == expected["lhs"]) {
                Json turned = entry;
                std::swap(turned["lhs"], turned["rhs"]);
                return turned;
            }
        }
        return nullptr;
    }

    const Json case_;
};

TEST_P(ReferenceCase, AgreesWithTheProcedure) {
    const auto procedure = case_["inputs"]["procedure"].get<std::string>();
    const std::size_t dot = procedure.find('.');
    if (procedure.find('/') == std::string::npos) {
        Json expected = case_["expected"];
        Json byMethod = Json::object();
        if (expected.contains("fixedEffectsByDFMethod")) {
            byMethod = expected["fixedEffectsByDFMethod"];
            expected.erase("fixedEffectsByDFMethod");
        }
        expectAgreement(call(procedure), expected, "result", "*");
        for (const auto& [method, effects] : byMethod.items()) {
            expectAgreement(call(procedure, {{"dfMethod", method}})["fixedEffects"], effects,
                            method, "*");
        }
        return;
    }
    for (const auto& [name, expected] : case_["expected"].items()) {
        expectAgreement(call(procedure.substr(0, dot + 1) + name), expected, name, "*");
    }
}

std::vector<std::filesystem::path> caseFiles() {
    const std::filesystem::directory_iterator all(references / "cases");
    std::vector<std::filesystem::path> files(begin(all), end(all));
    std::sort(files.begin(), files.end());
    return files;
}

std::string caseName(const testing::TestParamInfo<std::filesystem::path>& info) {
    std::string name = info.param.stem().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, ReferenceCase, testing::ValuesIn(caseFiles()), caseName);

}  // namespace
}  // namespace sorvane
