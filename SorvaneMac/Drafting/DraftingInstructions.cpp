#include "SorvaneMac/Drafting/DraftingInstructions.h"

namespace sorvane {

namespace {

constexpr std::string_view interpretation =
    "You are a careful statistics teaching assistant inside a research app. Explain the result "
    "you are given in three or four plain sentences for a social or behavioral science "
    "researcher. Do not exceed four sentences and do not add a separate note or \"please "
    "note\" paragraph. Use ONLY the numbers provided; never invent or recompute any value, and "
    "do not perform calculations. Read each number as exactly what its label says it is: a "
    "value in parentheses right after t, F, or the chi-square symbol is a degrees-of-freedom "
    "value, not a sample size or a number of people. Only call a number the sample size when "
    "it is written as N. Never describe a degrees-of-freedom or test-statistic value as a "
    "sample size, and do not treat a non-integer such as a Welch degrees-of-freedom value as "
    "if it were a count of participants. If the result reports a significance test (a p value "
    "and a test statistic), first state plainly whether it is statistically significant, then "
    "interpret chance correctly and consistently with that: a statistically significant result "
    "(a small p, typically below .05) is unlikely to be explained by chance alone, whereas a "
    "result that is NOT statistically significant (a larger p) is consistent with ordinary "
    "chance or sampling variability. Never say a non-significant result is \"unlikely to be "
    "due to chance,\" and never treat a non-significant result as proof that there is no "
    "difference or no relationship; say only that the data do not provide evidence of one. "
    "When a significance test is present, say what the effect size means in practical terms. "
    "If the result is purely descriptive (for example means, standard deviations, ranges, or "
    "frequencies with no p value), simply describe what those numbers show; do NOT claim it is "
    "or is not statistically significant and do NOT report or invent an effect size. End with "
    "one honest, relevant caution. No markdown, just plain prose. You have no tools and cannot "
    "call any. Respond with the finished paragraph only: never output tool calls, function or "
    "schema syntax, JSON, code fences, bracketed data, or labels such as TOOL_CALL, RESPONSE, "
    "or a list of tools used.";

constexpr std::string_view summary =
    "You are a research-manuscript writing assistant. Given several statistical findings, "
    "write ONE cohesive plain-language Results summary of four to seven sentences suitable for "
    "a manuscript. Integrate the findings into flowing prose. Use ONLY the findings and "
    "numbers provided; never invent, omit-and-replace, or recompute any value. End with one "
    "sentence of appropriate caution. No markdown, no headings, just the paragraph. You have "
    "no tools and cannot call any. Respond with the finished paragraph only: never output tool "
    "calls, function or schema syntax, JSON, code fences, bracketed data, or labels such as "
    "TOOL_CALL, RESPONSE, or a list of tools used.";

constexpr std::string_view requestLead = "Revision request (keep every other rule above): ";
constexpr std::string_view paragraphBreak = "\n\n";

std::string withRequest(std::string_view instructions, std::string_view request) {
    return std::string(instructions) + std::string(paragraphBreak) + std::string(requestLead) +
           std::string(request);
}

std::string refined(std::string_view instructions, DraftingInstructions::Refinement refinement) {
    return refinement ? withRequest(instructions, instruction(*refinement))
                      : std::string(instructions);
}

}  // namespace

std::string_view displayName(IntelligenceRefinement refinement) {
    switch (refinement) {
        case IntelligenceRefinement::shorter:
            return "Shorter";
        case IntelligenceRefinement::simpler:
            return "Simpler language";
        case IntelligenceRefinement::formal:
            break;
    }
    return "More formal";
}

std::string_view instruction(IntelligenceRefinement refinement) {
    switch (refinement) {
        case IntelligenceRefinement::shorter:
            return "Make the response noticeably shorter while keeping the key numbers and the "
                   "caution.";
        case IntelligenceRefinement::simpler:
            return "Rewrite in simpler, everyday language a first-year student would follow.";
        case IntelligenceRefinement::formal:
            break;
    }
    return "Rewrite in a more formal, academic register suitable for a manuscript.";
}

namespace DraftingInstructions {

std::string interpret(Refinement refinement) {
    return refined(interpretation, refinement);
}

std::string summarize(Refinement refinement) {
    return refined(summary, refinement);
}

std::string interpretWith(std::string_view request) {
    return withRequest(interpretation, request);
}

std::string resultText(const ReportItem& finding) {
    std::string text = finding.title + "\n" + finding.apaSummary;
    if (finding.caution && !finding.caution->empty()) {
        text += "\nCaution: " + *finding.caution;
    }
    return text;
}

std::string findingsText(const std::vector<ReportItem>& findings) {
    std::string text;
    for (const ReportItem& each : findings) {
        text += text.empty() ? "" : paragraphBreak;
        text += resultText(each);
    }
    return text;
}

std::string summaryPrompt(std::string_view findings) {
    return "Findings to synthesize:" + std::string(paragraphBreak) + std::string(findings);
}

}  // namespace DraftingInstructions

}  // namespace sorvane
