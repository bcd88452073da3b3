#include "SorvaneCore/Import/Survey/SvmmFieldReader.h"

#include "SorvaneCore/Import/Survey/PackageTable.h"
#include "SorvaneCore/Import/Survey/ZipStore.h"

namespace sorvane::SvmmFieldReader {

namespace {

using namespace PackageJson;

constexpr std::string_view groupRoleKey = "groupRole";

std::string noCasesNote() {
    return "This field package has no cases to import.";
}

std::string noAnswersNote() {
    return "This field package has no quantitative data to import.";
}

/// The key by which items and answers are matched.
std::optional<std::string> itemKey(const Object& object) {
    for (const std::string_view key : {"itemId", "itemID", "id", "item"}) {
        if (const std::optional<Element> value = member(object, key)) {
            return stringify(*value);
        }
    }
    return std::nullopt;
}

/// Fills the table of a package, case by case.
class CaseTable {
public:
    CaseTable(std::size_t packageBytes, SvmmFieldPackage& package)
        : table_(packageBytes), package_(package) {}

    void addItems(const Array& items) {
        for (const Element entry : items) {
            Object item;
            const bool isObject = entry.get(item) == simdjson::SUCCESS;
            const std::string text =
                isObject ? textMember(item, "itemText").value_or("") : stringify(entry);
            const std::size_t column = table_.newColumn(text);
            columnOf_.emplace((isObject ? itemKey(item) : std::nullopt).value_or(text), column);
            columnOf_.emplace(text, column);
            if (!text.empty()) {
                package_.labels[text] = text;
            }
        }
        itemCount_ = table_.headers().size();
    }

    void addCase(const Object& fieldCase) {
        table_.beginRow();
        if (const std::optional<Array> answers = arrayMember(fieldCase, "quantResponses")) {
            std::size_t position = 0;
            for (const Element answer : *answers) {
                addAnswer({}, answer, position++);
            }
        } else if (const auto byItem = objectMember(fieldCase, "quantResponses")) {
            std::size_t position = 0;
            for (const auto [key, answer] : *byItem) {
                addAnswer(std::string(key), answer, position++);
            }
        }
        if (const std::optional<Object> metadata = objectMember(fieldCase, "metadata")) {
            addMetadata(*metadata);
        }
    }

    bool hasAnswers() const { return hasAnswers_; }
    PackageTable& table() { return table_; }

private:
    void addAnswer(const std::optional<std::string>& key,
                   const Element& answer,
                   std::size_t position) {
        Object object;
        const bool isObject = answer.get(object) == simdjson::SUCCESS;
        const std::optional<Element> value = isObject ? answerValue(object) : answer;
        const std::optional<std::size_t> column =
            columnOf(key, isObject ? &object : nullptr, position);
        if (value && column) {
            table_.set(*column, stringify(*value));
            hasAnswers_ = true;
        }
    }

    static std::optional<Element> answerValue(const Object& answer) {
        for (const std::string_view key : {"likertValue", "numericValue", "choiceValue"}) {
            const std::optional<Element> value = member(answer, key);
            if (value && !value->is_null()) {
                return value;
            }
        }
        return std::nullopt;
    }

    /// The item of an answer: by its key, by the item that it names, by the item's text, or by its
    /// place.
    std::optional<std::size_t> columnOf(const std::optional<std::string>& key,
                                        const Object* answer,
                                        std::size_t position) const {
        std::vector<std::optional<std::string>> names = {key};
        if (answer != nullptr) {
            names.push_back(itemKey(*answer));
            names.push_back(textMember(*answer, "itemText"));
        }
        bool isNamed = false;
        for (const std::optional<std::string>& name : names) {
            const auto known = name ? columnOf_.find(*name) : columnOf_.end();
            if (known != columnOf_.end()) {
                return known->second;
            }
            isNamed = isNamed || name;
        }
        return isNamed || position >= itemCount_ ? std::nullopt : std::optional(position);
    }

    void addMetadata(const Object& metadata) {
        for (const auto [key, value] : metadata) {
            const std::string name(key);
            auto column = metadataColumnOf_.find(name);
            if (column == metadataColumnOf_.end()) {
                column = metadataColumnOf_.emplace(name, table_.newColumn(name)).first;
            }
            table_.set(column->second, stringify(value));
            if (key == groupRoleKey) {
                package_.roles[name] = "grouping";
            }
        }
    }

    PackageTable table_;
    SvmmFieldPackage& package_;
    std::unordered_map<std::string, std::size_t> columnOf_;
    std::unordered_map<std::string, std::size_t> metadataColumnOf_;
    std::size_t itemCount_ = 0;
    bool hasAnswers_ = false;
};

/// A plain list, or an object with the list under "items".
std::optional<Array> instrumentItems(const Object& manifest) {
    if (const std::optional<Array> items = arrayMember(manifest, "quantInstrument")) {
        return items;
    }
    const std::optional<Object> instrument = objectMember(manifest, "quantInstrument");
    return instrument ? arrayMember(*instrument, "items") : std::nullopt;
}

}  // namespace

std::optional<SvmmFieldPackage> read(std::string_view bytes) {
    const std::optional<std::string> text = ZipStore::extract(bytes, "manifest.json");
    const std::optional<Document> document = text ? Document::parse(*text) : std::nullopt;
    if (!document || textMember(document->root(), "format") != "svmmfield") {
        return std::nullopt;
    }
    const Object manifest = document->root();
    SvmmFieldPackage package;
    if (const std::optional<Object> study = objectMember(manifest, "study")) {
        package.title = textMember(*study, "title").value_or("");
    }
    const std::optional<Array> cases = arrayMember(manifest, "cases");
    if (!cases || cases->size() == 0) {
        package.notes.push_back(noCasesNote());
        return package;
    }
    CaseTable table(text->size(), package);
    if (const std::optional<Array> items = instrumentItems(manifest)) {
        table.addItems(*items);
    }
    for (const Element entry : *cases) {
        Object fieldCase;
        if (entry.get(fieldCase) == simdjson::SUCCESS) {
            table.addCase(fieldCase);
        }
    }
    if (!table.hasAnswers()) {
        package.notes.push_back(noAnswersNote());
        return package;
    }
    std::optional<TextTable> rows = table.table().finish();
    if (!rows) {
        return std::nullopt;
    }
    package.headers = table.table().headers();
    package.rows = *std::move(rows);
    return package;
}

}  // namespace sorvane::SvmmFieldReader
