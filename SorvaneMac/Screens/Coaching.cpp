#include "SorvaneMac/Screens/Coaching.h"

#include <map>
#include <string>
#include <string_view>

namespace sorvane {

namespace {

struct Advice {
    std::string_view first;
    std::string_view then;
    std::string_view care;
};

using enum StudioScreen;
using AdviceOf = std::map<StudioScreen, Advice>;

const AdviceOf projectAdvice = {
    {overview,
     {"The tiles: does the number of rows match the number of people you asked?",
      "The card of things to look at. What stands there changes what later screens can say.",
      "A study with few warnings is not a good study yet; it is one that was read in cleanly."}},
    {importData,
     {"What the import says it repaired: names that were empty or repeated, rows of another "
      "length.",
      "Which markers it read as missing, and how often each was seen.",
      "A code such as 99 is a number here. Where it means \"no answer\", say so before you "
      "analyse."}},
    {dataPreview,
     {"A few rows at the top and at the end of the table: totals and remarks of the source often "
      "hide there.",
      "The columns with the largest missing share. Ask why before you ask how to fill them.",
      "The table shows what was read. Whether it was asked and answered well, it cannot show."}},
    {dataPrep,
     {"The new column in Data Preview, beside the ones it was made from.",
      "The log on Overview, which keeps what was done and in which order.",
      "A cut of a continuous variable into groups loses information; keep the original too."}},
};

const AdviceOf instrumentAdvice = {
    {instrumentMap,
     {"The columns with little certainty. The reasons beside them say what spoke for each reading.",
      "Whether all items of one questionnaire have the same range.",
      "The reading is made from names, wording and values. You know the questionnaire; it does "
      "not."}},
    {variableTypes,
     {"The outcome, the groups and the items: these three decide what later screens offer.",
      "Numbers that are names, such as postal codes, and give them a role that is not analysed.",
      "Decide roles before you see results, or say in the report that you did not."}},
    {dataQuality,
     {"How much is missing, and whether it is spread or gathers in a few columns or people.",
      "Values outside the range of their scale, which are almost always errors of entry.",
      "An unusual case is not a wrong one. Look at the whole row before you set it aside."}},
    {scalesReliability,
     {"Alpha beside the number of cases and items: from few people it is a rough figure.",
      "Items whose corrected correlation is low or negative. A negative one is most often an item "
      "worded the other way that was not reversed.",
      "Alpha grows with the number of items. A long scale can have a high alpha and still measure "
      "two things."}},
};

const AdviceOf comparisonAdvice = {
    {descriptives,
     {"The histogram before the mean: is there one hump, a long tail, a wall at the end of the "
      "scale?",
      "Mean and median side by side. Where they differ much, the median says more about a typical "
      "person.",
      "With many cases the normality tests find trifles, with few they find nothing. Believe the "
      "picture first."}},
    {inferential,
     {"The group means with their spread, and how large each group is.",
      "The effect size, and only then p: p says how surprising, not how much.",
      "An assumption that is marked as violated comes with a remedy. Use it, or say why not."}},
    {nonparametric,
     {"Which question the test answers: ranks of two groups, of pairs, or counts in a table.",
      "The effect size and the medians or shares beside the p-value.",
      "Many equal ranks or cells with few expected cases make p-values rough."}},
    {groupPatterns,
     {"How much the boxes overlap. The overlap is the part that a mean cannot show.",
      "Groups of a handful of people: their boxes move with each new case.",
      "Groups that differ in one thing usually differ in others too."}},
    {categoricalTests,
     {"The shares in each row or column, not the counts, when the groups are of unequal size.",
      "The cells that stand furthest from what independence would give.",
      "With small expected counts prefer the exact test."}},
    {multivariate,
     {"Whether the outcomes belong together in theory; only then does one test of all make sense.",
      "Pillai's trace where groups are unequal or spreads differ; it gives way least.",
      "A significant test of all outcomes does not say which of them differs."}},
};

const AdviceOf relationAdvice = {
    {correlation,
     {"The scatter plot: a curve, a cluster or one far point can make or hide a correlation.",
      "The size of r before its p-value. As a rough guide, .10 is small, .30 medium, .50 large.",
      "In a matrix of many correlations some pass .05 by chance alone: one in twenty, on "
      "average."}},
    {relationships,
     {"Whether the points follow a line, and whether they spread evenly along it.",
      "The same association without the furthest points. What changes much was theirs.",
      "A third variable may move both. The plot cannot tell."}},
    {regression,
     {"R squared and its adjusted form: how much of the outcome the predictors account for.",
      "Each coefficient with its interval, in the outcome's own units.",
      "Predictors that say nearly the same share their effect between them; look at how they "
      "correlate before you call one of them unimportant."}},
    {dataReduction,
     {"The scree plot: keep what stands before the bend, not what passes a rule.",
      "The loadings of at least .40, and items that load on two factors.",
      "Components describe the variables, factors explain them. Say which of the two you used."}},
    {sem,
     {"Whether the estimation came to an end and no variance is negative.",
      "The fit measures together: CFI and TLI near .95 or more, RMSEA near .06 or less, SRMR near "
      ".08 or less. They are habits, not laws.",
      "Other models fit these data as well as yours. Paths added after looking at the data need "
      "new data."}},
    {mediation,
     {"The indirect effect and its bootstrap interval; zero inside it means that none was shown.",
      "For moderation, the slope at low, middle and high values of the moderator.",
      "The arrows are your theory. Measured at one time, the reverse order fits as well."}},
};

const AdviceOf modelAdvice = {
    {survey,
     {"The design effect: how many of your cases the design and the weights leave in effect.",
      "Each figure with its design-based interval, beside the one without weights.",
      "A few very large weights can carry an estimate alone."}},
    {multilevel,
     {"The intraclass correlation: how much of the spread lies between clusters.",
      "The fixed effects, with how many clusters stand behind them.",
      "With fewer than about twenty clusters the variances between them are known only roughly."}},
    {latentClass,
     {"The comparison over the number of classes: a lower BIC, and classes that are not tiny.",
      "The profiles. Classes that differ only in height are one scale cut into pieces.",
      "People are assigned with a probability. An entropy well below .80 says that many could "
      "stand elsewhere."}},
    {survival,
     {"How many people are still observed as time goes on; the end of a curve rests on few.",
      "The median time, or the hazard ratios with their intervals.",
      "Leaving the study must not have to do with the event, or the curve is wrong."}},
    {invariance,
     {"The step from one model to the next: a fall of CFI by more than about .01 speaks against "
      "the stricter one.",
      "Compare means only where the scalar model holds.",
      "Equal fit in two groups does not make their answers mean the same; it makes it tenable."}},
};

const AdviceOf reportAdvice = {
    {findings,
     {"The order of the findings: it is the order in which the reader meets them.",
      "The cautions under each finding, as a reader who doubts would read them.",
      "Assembling anew replaces the document. Edit it once the findings are settled."}},
    {technicalAppendix,
     {"The log of what was done to the table; a reader needs all of it to get the same table.",
      "The rule for missing data and what was read as missing.",
      "The preview shows the record of this page. An analysis has its own under Guide, Reproduce, "
      "on its screen."}},
    {export_,
     {"The report as a PDF, page by page, before it goes to anybody.",
      "The tables in your word processor: headings, notes and numbering.",
      "The file is a copy. What you change in it does not come back here."}},
    {userGuide,
     {"The five steps of the road; each names the screens that belong to it.",
      "The keys: every screen and every control can be reached without a mouse.",
      "The guide says how to use a method here. Whether it suits your question is for a "
      "textbook."}},
};

}  // namespace

std::vector<Passage> coaching(StudioScreen screen) {
    for (const AdviceOf* advice : {&projectAdvice, &instrumentAdvice, &comparisonAdvice,
                                   &relationAdvice, &modelAdvice, &reportAdvice}) {
        if (const auto found = advice->find(screen); found != advice->end()) {
            const Advice& given = found->second;
            return {{"LOOK FIRST AT", std::string(given.first), false},
                    {"THEN", std::string(given.then), false},
                    {"TAKE CARE", std::string(given.care), true}};
        }
    }
    return {};
}

}  // namespace sorvane
