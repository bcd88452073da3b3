#include "SorvaneMac/Screens/Survey/SharedSentences.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::SharedSentences {

namespace {

constexpr std::string_view digits = "0123456789";

/// A sentence without its counts, and what they are among those that say it.
struct Form {
    /// Before the first count, between counts, and after the last.
    std::vector<std::string> words;
    /// As the first one writes them.
    std::vector<std::string> counts;
    std::vector<double> least;
    std::vector<double> most;
    std::vector<std::string> names;

    static Form of(std::string_view sentence);
    void add(const Form& other);
    std::string sentence() const;
};

Form Form::of(std::string_view sentence) {
    Form form;
    while (true) {
        const std::size_t first = sentence.find_first_of(digits);
        form.words.emplace_back(sentence.substr(0, first));
        if (first == std::string_view::npos) {
            form.most = form.least;
            return form;
        }
        sentence.remove_prefix(first);
        const std::size_t length = std::min(sentence.find_first_not_of(digits), sentence.size());
        form.counts.emplace_back(sentence.substr(0, length));
        form.least.push_back(NumberText::parse(form.counts.back()).value_or(0.0));
        sentence.remove_prefix(length);
    }
}

void Form::add(const Form& other) {
    for (std::size_t i = 0; i < least.size(); ++i) {
        least[i] = std::min(least[i], other.least[i]);
        most[i] = std::max(most[i], other.most[i]);
    }
}

std::string Form::sentence() const {
    const auto count = [](double value) {
        return ResultText::count(static_cast<std::int64_t>(value));
    };
    std::string text = words.front();
    for (std::size_t i = 0; i < least.size(); ++i) {
        text += least[i] < most[i] ? count(least[i]) + " to " + count(most[i]) : counts[i];
        text += words[i + 1];
    }
    return text;
}

}  // namespace

std::vector<std::string> told(const std::vector<Saying>& sayings) {
    std::vector<Form> forms;
    for (const Saying& saying : sayings) {
        for (const std::string& sentence : saying.sentences) {
            Form form = Form::of(sentence);
            const auto same = std::ranges::find(forms, form.words, &Form::words);
            Form& kept = same == forms.end() ? forms.emplace_back(form) : *same;
            kept.add(form);
            kept.names.push_back(saying.name);
        }
    }
    std::vector<std::string> sentences;
    for (const Form& form : forms) {
        const bool isOfAll = form.names.size() == sayings.size();
        sentences.push_back((isOfAll ? "" : someOf(form.names) + ": ") + form.sentence());
    }
    return sentences;
}

std::string someOf(const std::vector<std::string>& names) {
    constexpr std::size_t shown = 6;
    if (names.size() <= shown) {
        return ResultText::listed(names);
    }
    std::string text;
    for (std::size_t i = 0; i < shown; ++i) {
        text += names[i] + ", ";
    }
    return text + "and " + ResultText::count(std::ssize(names) - static_cast<std::int64_t>(shown)) +
           " more";
}

}  // namespace sorvane::SharedSentences
