#include "core/description_builder.h"

#include "c4d_basetime.h"
#include "c4d_customdatatype.h"
#include "core/description_words.h"
#include "core/string_access.h"

#include <algorithm>
#include <numbers>
#include <set>

namespace host {
namespace {

// Elements without a symbol are numbered from here on, far from all numbers that are handed out.
constexpr Int32 kFirstUnnamed = 2'000'000'000;

// The parameter that flags are added to.
struct Target {
    BaseContainer& container;
    ValueForm form;
    Int32 unit = DESC_UNIT_FLOAT;
    const CustomProperty* properties = nullptr;
    bool isGroup = false;
};

// Files write percentages and degrees where values are shares and radians.
double fromUnit(double written, Int32 unit)
{
    if (unit == DESC_UNIT_PERCENT) return written / 100;
    if (unit == DESC_UNIT_DEGREE) return written * (std::numbers::pi / 180);
    return written;
}

bool exceeds(const GeData& least, const GeData& most)
{
    if (least.GetType() == DA_VECTOR) {
        const Vector& a = least.GetVector();
        const Vector& b = most.GetVector();
        return a.x > b.x || a.y > b.y || a.z > b.z;
    }
    return least.GetType() == DA_TIME ? least.GetTime().Get() > most.GetTime().Get()
                                      : least.GetFloat() > most.GetFloat();
}

class Builder {
public:
    Builder(const DescriptionSource& files, DescriptionSurroundings& outside, ResourceFaults& report)
        : source(files),
          surroundings(outside),
          faults(report)
    {
    }

    std::unique_ptr<StaticDescription> build()
    {
        const ResourceLayout layout = ParseLayout(source.layout, faults);
        if (layout.kind != "CONTAINER" || layout.name.empty()) {
            fault(1, "there is no container with a name");
            return nullptr;
        }
        result->name = layout.name;
        result->symbols = ParseSymbols(source.symbols, faults);
        for (StringEntry& entry : ParseStrings(source.strings, faults).entries) {
            texts.insert_or_assign(entry.symbol, std::move(entry));
        }

        // What is included stands before the own elements, wherever the word itself stands.
        if (!include(layout.statements)) return nullptr;
        for (const DescribedParameter& parameter : result->data.parameters) inherited.insert(parameter.id[0].id);
        readBlock(layout.statements, nullptr);
        if (result->title == String()) result->title = labelOf(layout.name);
        return std::move(result);
    }

private:
    void fault(int line, std::string_view text) { faults.add(source.layout.name, line, text); }

    bool include(const std::vector<ResourceStatement>& statements)
    {
        bool complete = true;
        for (const ResourceStatement& statement : statements) {
            if (statement.keyword == "GROUP") complete &= include(statement.children);
            if (statement.keyword == "INCLUDE") complete &= include(statement);
        }
        return complete;
    }

    bool include(const ResourceStatement& statement)
    {
        const std::string name = statement.values.empty() ? std::string() : statement.values.front().text;
        const StaticDescription* parent = surroundings.included(name);
        if (!parent) {
            fault(statement.line, "there is no description " + InQuotes(name) + " to include");
            return false;
        }
        for (const DescribedParameter& parameter : parent->data.parameters) {
            if (!result->data.find(parameter.id[0].id)) result->data.enter(parameter.id) = parameter;
        }
        result->symbols.merge(parent->symbols);
        return true;
    }

    // `group` is null at the top.
    void readBlock(const std::vector<ResourceStatement>& statements, DescribedParameter* group)
    {
        for (const ResourceStatement& statement : statements) {
            const std::string& keyword = statement.keyword;
            if (keyword == "GROUP") {
                readGroup(statement, group);
            } else if (keyword == "HIDE" || keyword == "SHOW") {
                hide(statement, keyword == "HIDE");
            } else if (keyword == "NAME" && !group) {
                if (!statement.values.empty()) result->title = labelOf(statement.values.front().text);
            } else if (keyword == "INCLUDE") {
                continue; // read already
            } else if (!readElement(statement, group)) {
                if (group && !statement.hasBlock) {
                    readFlag(statement, {.container = group->container, .form = ValueForm::Bool, .isGroup = true});
                } else {
                    fault(statement.line, "there is no type of element called " + InQuotes(keyword));
                }
            }
        }
    }

    void hide(const ResourceStatement& statement, bool isHidden)
    {
        const std::optional<Int32> id = symbolOf(statement);
        DescribedParameter* parameter = id ? result->data.find(*id) : nullptr;
        if (parameter) return parameter->container.SetBool(DESC_HIDE, isHidden);
        if (id) fault(statement.line, InQuotes(statement.values.front().text) + " is not among the elements so far");
    }

    void readGroup(const ResourceStatement& statement, const DescribedParameter* parent)
    {
        const bool isNamed = !statement.values.empty();
        const std::optional<Int32> id = isNamed ? symbolOf(statement) : freeId();
        if (!id) return;
        const bool isKnown = result->data.find(*id) != nullptr;
        DescribedParameter& group = result->data.enter(DescLevel(*id, DTYPE_GROUP, 0));
        if (group.id[0].dtype != DTYPE_GROUP) {
            return fault(statement.line, InQuotes(statement.values.front().text) + " is no group");
        }
        if (!isKnown && parent) group.group = parent->id;
        if (isNamed) setName(group.container, statement.values.front().text, isKnown);
        readBlock(statement.children, &group);
    }

    // False if the keyword is no type's.
    bool readElement(const ResourceStatement& statement, const DescribedParameter* group)
    {
        const ElementType* builtIn = FindElementType(statement.keyword);
        CustomDataTypeClass* custom = builtIn ? nullptr : surroundings.dataType(statement.keyword);
        if (!builtIn && !custom) return false;
        const Int32 dataType = builtIn ? builtIn->dataType : custom->GetId();
        const bool mayBeUnnamed = dataType == DTYPE_SEPARATOR || dataType == DTYPE_STATICTEXT;
        const bool isNamed = !statement.values.empty();
        const std::optional<Int32> id = !isNamed && mayBeUnnamed ? freeId() : symbolOf(statement);
        if (!id) return true;
        const DescribedParameter* known = result->data.find(*id);
        if (known && (known->id[0].dtype == DTYPE_GROUP || inherited.erase(*id) == 0)) {
            fault(statement.line, InQuotes(statement.values.front().text) + " stands here a second time");
            return true;
        }

        // An element that was included is replaced where it stands.
        DescribedParameter& parameter = result->data.enter(DescLevel(*id, dataType, 0));
        parameter.id = DescID(DescLevel(*id, dataType, 0));
        parameter.group = group ? group->id : DescID();
        parameter.container = BaseContainer();
        parameter.container.SetInt32(DESC_ANIMATE, DESC_ANIMATE_ON);
        if (custom) custom->GetDefaultProperties(parameter.container);
        if (isNamed) setName(parameter.container, statement.values.front().text, false);

        Target target{parameter.container, builtIn ? builtIn->form : ValueForm::None};
        if (custom) target.properties = custom->GetProperties();
        readFlags(statement, target);
        return true;
    }

    // Labels come from the texts; what has none shows its symbol.
    void setName(BaseContainer& container, const std::string& symbol, bool keepsOldLabel)
    {
        const auto entry = texts.find(symbol);
        const bool hasText = entry != texts.end();
        container.SetString(DESC_IDENT, TextOf(symbol));
        if (!hasText && keepsOldLabel) return;
        const bool hasShort = hasText && !entry->second.shortText.empty();
        const std::string& label = hasText ? entry->second.text : symbol;
        container.SetString(DESC_NAME, TextOf(label));
        container.SetString(DESC_SHORT_NAME, TextOf(hasShort ? entry->second.shortText : label));
    }

    String labelOf(const std::string& symbol) const
    {
        const auto entry = texts.find(symbol);
        return TextOf(entry == texts.end() ? symbol : entry->second.text);
    }

    void readFlags(const ResourceStatement& element, Target target)
    {
        if (target.form == ValueForm::Integer) target.unit = DESC_UNIT_INT;
        for (const ResourceStatement& flag : element.children) { // the unit first: others are told in it
            if (flag.keyword == "UNIT") readWord(flag, FindUnit, target.unit);
        }
        const bool isNumber = target.form == ValueForm::Integer || target.form == ValueForm::Real;
        if (isNumber || target.form == ValueForm::Vector) target.container.SetInt32(DESC_UNIT, target.unit);
        for (const ResourceStatement& flag : element.children) {
            if (flag.keyword != "UNIT") readFlag(flag, target);
        }

        const GeData* least = target.container.GetDataPointer(DESC_MIN);
        const GeData* most = target.container.GetDataPointer(DESC_MAX);
        if (least && most && exceeds(*least, *most)) {
            fault(element.line, "the least value is above the greatest; neither holds");
            target.container.RemoveData(DESC_MIN);
            target.container.RemoveData(DESC_MAX);
        }
    }

    void readFlag(const ResourceStatement& statement, const Target& target)
    {
        const std::string& keyword = statement.keyword;
        if (keyword == "CYCLE" && target.form == ValueForm::Integer) return readCycle(statement, target.container);
        if (keyword == "ACCEPT") return readTypes(statement, target.container, DESC_ACCEPT);
        if (keyword == "REFUSE") return readTypes(statement, target.container, DESC_REFUSE);
        if (keyword == "ANIM") {
            Int32 mode = DESC_ANIMATE_ON;
            if (readWord(statement, FindAnimation, mode)) target.container.SetInt32(DESC_ANIMATE, mode);
            return;
        }
        if (keyword == "CUSTOMGUI") {
            const auto findAny = [&](std::string_view word) {
                const std::optional<Int32> ours = FindGui(word);
                return ours ? ours : surroundings.gui(word);
            };
            Int32 gui = kGuiDefault;
            if (readWord(statement, findAny, gui)) target.container.SetInt32(DESC_CUSTOMGUI, gui);
            return;
        }
        if (readProperty(statement, target)) return;
        const Flag* flag = FindFlag(keyword);
        if (!flag || statement.hasBlock) return fault(statement.line, InQuotes(keyword) + " means nothing here");
        readKnownFlag(statement, *flag, target);
    }

    void readKnownFlag(const ResourceStatement& statement, const Flag& flag, const Target& target)
    {
        if (flag.form == FlagForm::Ignored) return;
        if (flag.form == FlagForm::Amount) {
            GeData amount;
            if (!readAmount(statement, target, amount)) return;
            target.container.SetData(flag.key, amount);
            if (target.isGroup && flag.key == DESC_DEFAULT) target.container.SetBool(DESC_GUIOPEN, amount.GetBool());
            return;
        }
        const bool isBare = statement.values.empty();
        if (flag.form == FlagForm::Switch) {
            if (!isBare) fault(statement.line, InQuotes(statement.keyword) + " takes no value");
            return target.container.SetBool(flag.key, true);
        }
        if (isBare && flag.form == FlagForm::MaybeInteger) return target.container.SetInt32(flag.key, 1);
        if (const std::optional<Int32> value = symbolOf(statement)) target.container.SetInt32(flag.key, *value);
    }

    // What the data type of a plug-in added to the words of its elements.
    bool readProperty(const ResourceStatement& statement, const Target& target)
    {
        const CustomProperty* property = target.properties;
        if (!property) return false;
        while (property->type != CUSTOMTYPE_END && statement.keyword != property->ident) ++property;
        GeData value;
        switch (property->type) {
        case CUSTOMTYPE_END: return false;
        case CUSTOMTYPE_FLAG: value = GeData(Int32{1}); break;
        case CUSTOMTYPE_LONG: readAmount(statement, {target.container, ValueForm::Integer}, value); break;
        case CUSTOMTYPE_REAL: readAmount(statement, {target.container, ValueForm::Real}, value); break;
        case CUSTOMTYPE_STRING: readAmount(statement, {target.container, ValueForm::Text}, value); break;
        case CUSTOMTYPE_VECTOR: readAmount(statement, {target.container, ValueForm::Vector}, value); break;
        }
        if (value.GetType() != DA_NIL) target.container.SetData(property->id, value);
        return true;
    }

    bool readAmount(const ResourceStatement& statement, const Target& target, GeData& amount)
    {
        const std::vector<ResourceValue>& values = statement.values;
        const bool isText = !values.empty() && values.front().kind == ResourceValue::Kind::Text;
        if (target.form == ValueForm::Text && isText) {
            amount = GeData(TextOf(values.front().text));
            return true;
        }
        if (target.form == ValueForm::Bool || target.form == ValueForm::Integer) {
            const std::optional<Int32> number = symbolOf(statement);
            if (number) amount = GeData(target.form == ValueForm::Bool ? Int32{*number != 0} : *number);
            return number.has_value();
        }
        const bool isOfNumbers = target.form == ValueForm::Real || target.form == ValueForm::Time ||
                                 (target.form == ValueForm::Vector && (values.size() == 1 || values.size() == 3));
        const size_t wanted = target.form == ValueForm::Vector ? values.size() : 1;
        const auto isNumber = [](const ResourceValue& value) { return value.kind == ResourceValue::Kind::Number; };
        if (!isOfNumbers || values.size() != wanted || !std::ranges::all_of(values, isNumber)) {
            fault(statement.line, InQuotes(statement.keyword) + " needs a value of the element's type");
            return false;
        }

        const auto number = [&](size_t i) { return fromUnit(values[values.size() == 3 ? i : 0].number, target.unit); };
        if (target.form == ValueForm::Real) amount = GeData(number(0));
        if (target.form == ValueForm::Time) amount = GeData(BaseTime(number(0)));
        if (target.form == ValueForm::Vector) amount = GeData(Vector(number(0), number(1), number(2)));
        return true;
    }

    void readCycle(const ResourceStatement& statement, BaseContainer& container)
    {
        constexpr Int32 kSeparator = -1;
        BaseContainer entries, symbols, icons;
        std::set<Int32> taken;
        for (const ResourceStatement& entry : statement.children) {
            const std::optional<Int32> value = numberOf(entry.keyword, entry.line);
            if (!value) continue;
            if (*value == kSeparator && !result->symbols.find(entry.keyword)) {
                entries.InsData(kSeparator, GeData(String()));
                continue;
            }
            if (!taken.insert(*value).second) {
                fault(entry.line, InQuotes(entry.keyword) + " has the number of another entry");
                continue;
            }
            entries.InsData(*value, GeData(labelOf(entry.keyword)));
            symbols.InsData(*value, GeData(TextOf(entry.keyword)));
            const std::optional<Int32> icon = entry.icon.empty() ? std::nullopt : numberOf(entry.icon, entry.line);
            if (icon) icons.InsData(*value, GeData(*icon));
        }
        container.SetContainer(DESC_CYCLE, entries);
        container.SetContainer(DESC_CYCLESYMBOLS, symbols);
        if (icons.GetIndexData(0)) container.SetContainer(DESC_CYCLEICONS, icons);
    }

    void readTypes(const ResourceStatement& statement, BaseContainer& container, Int32 key)
    {
        BaseContainer types;
        for (const ResourceStatement& entry : statement.children) {
            std::optional<Int32> type = FindNodeType(entry.keyword);
            if (!type) type = numberOf(entry.keyword, entry.line);
            if (type) types.InsData(*type, GeData(String()));
        }
        container.SetContainer(key, types);
    }

    template <class Find> bool readWord(const ResourceStatement& statement, const Find& find, Int32& value)
    {
        const std::string word = statement.values.empty() ? std::string() : statement.values.front().text;
        const std::optional<Int32> found = find(word);
        if (!found) fault(statement.line, InQuotes(statement.keyword) + " cannot be " + InQuotes(word));
        if (found) value = *found;
        return found.has_value();
    }

    // The one value of a statement, a number or a symbol.
    std::optional<Int32> symbolOf(const ResourceStatement& statement)
    {
        if (statement.values.size() == 1) return numberOf(statement.values.front().text, statement.line);
        fault(statement.line,
              InQuotes(statement.keyword) + (statement.values.empty() ? " needs a value" : " has too many"));
        return {};
    }

    std::optional<Int32> numberOf(const std::string& text, int line)
    {
        if (const Int32* known = result->symbols.find(text)) return *known;
        Int32 number = 0;
        if (ParseInteger(text, number)) return number;
        fault(line, InQuotes(text) + " is neither a symbol nor a whole number");
        return {};
    }

    Int32 freeId()
    {
        while (result->data.find(nextUnnamed)) ++nextUnnamed;
        return nextUnnamed;
    }

    const DescriptionSource& source;
    DescriptionSurroundings& surroundings;
    ResourceFaults& faults;
    std::unique_ptr<StaticDescription> result = std::make_unique<StaticDescription>();
    std::map<std::string, StringEntry, std::less<>> texts;
    std::set<Int32> inherited; // elements that may still be replaced
    Int32 nextUnnamed = kFirstUnnamed;
};

} // namespace

std::unique_ptr<StaticDescription> BuildDescription(const DescriptionSource& source,
                                                    DescriptionSurroundings& surroundings, ResourceFaults& faults)
{
    return Builder(source, surroundings, faults).build();
}

} // namespace host
