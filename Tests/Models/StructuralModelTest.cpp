#include <boost/describe/enum_to_string.hpp>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneCore/Models/Structural/SEMModel.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

using Texts = std::vector<std::string>;

/// Terms as they could be written: "f =~ 0.5*x".
Texts termsOf(const SEMParsedSpec& spec) {
    Texts result;
    for (const SEMSyntaxTerm& term : spec.terms) {
        const std::string fixed =
            term.fixedValue ? NumberText::general(*term.fixedValue, 15) + "*" : "";
        result.push_back(term.lhs + " " + std::string(rawValue(term.op)) + " " + fixed + term.rhs);
    }
    return result;
}

std::string kindText(SEMParameterKind kind) {
    return boost::describe::enum_to_string(kind, "");
}

/// Slots from `first` on: "f =~ 1*x" where fixed, with its kind.
Texts slotsOf(const SEMModel& model, std::size_t first = 0) {
    Texts result;
    for (std::size_t i = first; i < model.parameters.size(); ++i) {
        const SEMParameterSlot& slot = model.parameters[i];
        const std::string fixed = slot.isFree ? "" : NumberText::general(slot.fixedValue, 15) + "*";
        result.push_back(slot.lhs + " " + slot.op + " " + fixed + slot.rhs + " " +
                         kindText(slot.kind));
    }
    return result;
}

template <typename Call>
std::string messageOf(const Call& call) {
    try {
        call();
    } catch (const SEMSyntaxError& error) {
        return error.what();
    }
    return "";
}

SEMModel built(const std::string& text, const Texts& columns) {
    return SEMModel::build(SEMModelSpecParser::parse(text), columns);
}

TEST(SEMModelSpecParser, ReadsTermsInTheOrderOfWriting) {
    struct Case {
        int line;
        std::string text;
        Texts terms;
        Texts latent;
        Texts all;
    };
    const std::vector<Case> cases = {
        {__LINE__, "f =~ 1*x1 + x2", {"f =~ 1*x1", "f =~ x2"}, {"f"}, {"f", "x1", "x2"}},
        {__LINE__, "a ~ b; c ~ d", {"a ~ b", "c ~ d"}, {}, {"a", "b", "c", "d"}},
        {__LINE__, "a~~0*b\r\n\n a~~ -1.5e-1 * a", {"a ~~ 0*b", "a ~~ -0.15*a"}, {}, {"a", "b"}},
        {__LINE__, "a ~ b # why; c ~ d", {"a ~ b", "c ~ d"}, {}, {"a", "b", "c", "d"}},
        {__LINE__,
         "`my; #item` =~ `a + b` + 2*`x*y`",
         {"my; #item =~ a + b", "my; #item =~ 2*x*y"},
         {"my; #item"},
         {"my; #item", "a + b", "x*y"}},
        {__LINE__, "_x =~ größe_2", {"_x =~ größe_2"}, {"_x"}, {"_x", "größe_2"}},
        {__LINE__,
         "y ~ x\nf =~ y\ng =~ f",
         {"y ~ x", "f =~ y", "g =~ f"},
         {"f", "g"},
         {"y", "x", "f", "g"}},
    };
    for (const Case& each : cases) {
        const SEMParsedSpec spec = SEMModelSpecParser::parse(each.text);
        EXPECT_EQ(termsOf(spec), each.terms) << "line " << each.line;
        EXPECT_EQ(spec.latentVariables, each.latent) << "line " << each.line;
        EXPECT_EQ(spec.allVariables, each.all) << "line " << each.line;
    }
}

TEST(SEMModelSpecParser, SaysWhatItCannotRead) {
    const std::string noOperator = "Line has no recognized operator (=~, ~, or ~~): ";
    const std::string leftName = "Invalid left-hand side name ";
    const std::string rightName = "Invalid right-hand side name ";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", "Model is empty: no parsable terms found."},
        {" # nothing\n;;\n", "Model is empty: no parsable terms found."},
        {"f = x # =~", noOperator + "\"f = x\""},
        {"`a ~ b`", noOperator + "\"`a ~ b`\""},
        {"~ x", "Empty left-hand side in: \"~ x\""},
        {"y ~ x\nx ~", "Empty right-hand side in: \"x ~\""},
        {"2x =~ a", leftName + "\"2x\""},
        {"a b =~ c", leftName + "\"a b\""},
        {"a ~ b =~ c", leftName + "\"a ~ b\""},
        {"`` =~ c", leftName + "\"``\""},
        {"`a` `b` =~ c", leftName + "\"`a` `b`\""},
        {"f =~ a + + b", "Empty term in right-hand side of: \"f =~ a + + b\""},
        {"f =~ a*b", rightName + "\"a*b\""},
        {"f =~ 1*2x", rightName + "\"2x\""},
        {"f =~ 1*", rightName + "\"\""},
        {"f =~ a-b", rightName + "\"a-b\""},
        {"f =~ inf*a + b", "The multiplier \"inf\" of \"a\" is not a finite number."},
        {"a ~~ -NaN * `b c`", "The multiplier \"-NaN\" of \"`b c`\" is not a finite number."},
        {"a ~ 1e999*b", "The multiplier \"1e999\" of \"b\" is not a finite number."},
    };
    for (const auto& [text, message] : cases) {
        EXPECT_EQ(messageOf([&text = text] { return SEMModelSpecParser::parse(text); }), message)
            << text;
    }
}

TEST(SEMModel, FixesTheFirstIndicatorUnlessItHasAValue) {
    const Texts columns = {"x1", "x2", "x3"};
    const std::vector<std::pair<std::string, Texts>> cases = {
        {"f =~ 1*x1 + x2", {"f =~ 1*x1", "f =~ x2"}},
        {"f =~ x2 + 1*x1", {"f =~ 1*x2", "f =~ 1*x1"}},
        {"f =~ 0.5*x1 + x2", {"f =~ 0.5*x1", "f =~ x2"}},
        {"f =~ x1 + x1 + x2", {"f =~ 1*x1", "f =~ x2"}},
        {"f =~ x1 + x2 + 1*x1", {"f =~ 1*x1", "f =~ x2"}},
    };
    for (const auto& [text, loadings] : cases) {
        Texts slots = slotsOf(built(text, columns));
        for (std::size_t i = 0; i < loadings.size(); ++i) {
            EXPECT_EQ(slots.at(i), loadings[i] + " loading") << text;
        }
        EXPECT_TRUE(slots[loadings.size()].ends_with("residualVariance")) << text;
    }
}

TEST(SEMModel, RefusesAPathOfTwoValues) {
    const Texts columns = {"x1", "x2", "x3"};
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"f =~ x1 + x2\nf =~ 0.5*x1", "f =~ x1"},
        {"f =~ x1 + 0.5*x2\nf =~ x2", "f =~ x2"},
        {"x1 ~ 2*x2 + 3*x2", "x1 ~ x2"},
        {"f =~ x1 + 0.5*x2\nx2 ~ f", "x2 ~ f"},
    };
    for (const auto& [text, path] : cases) {
        EXPECT_EQ(messageOf([&text = text, &columns] { built(text, columns); }),
                  "The model has the path \"" + path + "\" twice, with different values.")
            << text;
    }
    EXPECT_EQ(built("x1 ~ 2*x2 + x3\nx1 ~ 2*x2", columns).freeCount,
              built("x1 ~ 2*x2 + x3", columns).freeCount);
}

TEST(SEMModel, FreesWhatGoesWithoutSaying) {
    struct Case {
        int line;
        std::string text;
        std::size_t written;
        Texts rest;
    };
    const std::vector<Case> cases = {
        {__LINE__,
         "f =~ a + b\ng =~ c\nc ~~ c\ng ~~ f",
         5,
         {"a ~~ a residualVariance", "b ~~ b residualVariance", "f ~~ f latentVariance",
          "g ~~ g latentVariance"}},
        {__LINE__,
         "f =~ a + b\ng =~ c\ng ~ f\ng ~~ 2*g",
         5,
         {"a ~~ a residualVariance", "b ~~ b residualVariance", "c ~~ c residualVariance",
          "f ~~ f latentVariance"}},
        // Lower factors have no covariances of their own.
        {__LINE__,
         "f =~ a\ng =~ b\nh =~ f + g",
         4,
         {"a ~~ a residualVariance", "b ~~ b residualVariance", "f ~~ f latentVariance",
          "g ~~ g latentVariance", "h ~~ h latentVariance"}},
        // Predictors covary, and outcomes beyond what predicts them.
        {__LINE__,
         "a ~ b + c\nd ~ a + b\ne ~ b",
         5,
         {"a ~~ a residualVariance", "d ~~ d residualVariance", "e ~~ e residualVariance",
          "b ~~ b residualVariance", "c ~~ c residualVariance", "b ~~ c residualCovariance",
          "d ~~ e residualCovariance"}},
        {__LINE__,
         "f =~ a + b\ng =~ c\ng ~ f",
         4,
         {"a ~~ a residualVariance", "b ~~ b residualVariance", "c ~~ c residualVariance",
          "f ~~ f latentVariance", "g ~~ g structuralResidualVariance"}},
        {__LINE__,
         "f =~ a + b\nc ~ f + d\ne ~~ 0*e",
         5,
         {"a ~~ a residualVariance", "b ~~ b residualVariance", "c ~~ c residualVariance",
          "f ~~ f latentVariance", "d ~~ d residualVariance"}},
    };
    const Texts columns = {"a", "b", "c", "d", "e"};
    for (const Case& each : cases) {
        const SEMModel model = built(each.text, columns);
        EXPECT_EQ(slotsOf(model, each.written), each.rest) << "line " << each.line;
        std::int64_t next = 0;
        for (const SEMParameterSlot& slot : model.parameters) {
            EXPECT_EQ(slot.freeIndex, slot.isFree ? next++ : -1) << "line " << each.line;
        }
        EXPECT_EQ(model.freeCount, next) << "line " << each.line;
    }
}

TEST(SEMModel, NamesTheFirstVariableThatIsNoColumn) {
    const auto parsed = SEMModelSpecParser::parse("f =~ a + b + c\nd ~ f");
    EXPECT_EQ(messageOf([&] {
                  return SEMModel::build(parsed, Texts{"c", "a", "f"});
              }),
              "Variable \"b\" is referenced in the model but is not in the dataset.");
    EXPECT_EQ(SEMModel::unknownNames(parsed, Texts{"c", "a"}), (Texts{"b", "d"}));
}

}  // namespace

}  // namespace sorvane
