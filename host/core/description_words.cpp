#include "core/description_words.h"

#include "c4d_basematerial.h"
#include "c4d_baseobject.h"
#include "c4d_basetag.h"
#include "core/description.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace host {
namespace {

constexpr ElementType kElementTypes[] = {
    {"BOOL", DTYPE_BOOL, ValueForm::Bool},
    {"LONG", DTYPE_LONG, ValueForm::Integer},
    {"REAL", DTYPE_REAL, ValueForm::Real},
    {"VECTOR", DTYPE_VECTOR, ValueForm::Vector},
    {"COLOR", DTYPE_COLOR, ValueForm::Vector},
    {"NORMAL", DTYPE_NORMAL, ValueForm::Vector},
    {"MATRIX", DTYPE_MATRIX, ValueForm::None},
    {"BASETIME", DTYPE_TIME, ValueForm::Time},
    {"STRING", DTYPE_STRING, ValueForm::Text},
    {"STATICTEXT", DTYPE_STATICTEXT, ValueForm::Text},
    {"FILENAME", DTYPE_FILENAME, ValueForm::None},
    {"LINK", DTYPE_BASELISTLINK, ValueForm::None},
    {"SHADERLINK", DTYPE_BASELISTLINK, ValueForm::None},
    {"BUTTON", DTYPE_BUTTON, ValueForm::None},
    {"SEPARATOR", DTYPE_SEPARATOR, ValueForm::None},
    {"POPUP", DTYPE_POPUP, ValueForm::None},
};

// Keys of a file field's settings.
constexpr Int32 kFilenameDirectory = 10000;
constexpr Int32 kFilenameSave = 10002;

// Keys of a node's ports.
enum {
    kPortIn = 50,
    kPortOut,
    kPortStatic,
    kPortNeedsConnection,
    kPortMultiple,
    kPortOnly,
    kPortCreated,
    kPortsMin,
    kPortsMax,
    kPortNotMovable,
    kPortEditable
};

constexpr Flag kFlags[] = {
    {"MIN", DESC_MIN, FlagForm::Amount},
    {"MAX", DESC_MAX, FlagForm::Amount},
    {"MINSLIDER", DESC_MINSLIDER, FlagForm::Amount},
    {"MAXSLIDER", DESC_MAXSLIDER, FlagForm::Amount},
    {"STEP", DESC_STEP, FlagForm::Amount},
    {"DEFAULT", DESC_DEFAULT, FlagForm::Amount},
    {"MINEX", DESC_MINEX, FlagForm::Switch},
    {"MAXEX", DESC_MAXEX, FlagForm::Switch},
    {"HIDDEN", DESC_HIDE, FlagForm::Switch},
    {"OPEN", DESC_GUIOPEN, FlagForm::Switch},
    {"SCALE_H", DESC_SCALEH, FlagForm::Switch},
    {"SCALE_V", DESC_GROUPSCALEV, FlagForm::Switch},
    {"FIT_H", DESC_FITH, FlagForm::Switch},
    {"NEWLINE", DESC_NEWLINE, FlagForm::Switch},
    {"LINE", DESC_SEPARATORLINE, FlagForm::Switch},
    {"ALIGNLEFT", DESC_ALIGNLEFT, FlagForm::Switch},
    {"LAYOUTGROUP", DESC_LAYOUTGROUP, FlagForm::Switch},
    {"TITLEBAR", DESC_TITLEBAR, FlagForm::Switch},
    {"PARENTCOLLAPSE", DESC_PARENT_COLLAPSE, FlagForm::MaybeInteger},
    {"COLUMNS", DESC_COLUMNS, FlagForm::Integer},
    {"PARENTID", DESC_PARENTID, FlagForm::Integer},
    {"DIRECTORY", kFilenameDirectory, FlagForm::Switch},
    {"SAVE", kFilenameSave, FlagForm::Switch},
    {"WORDWRAP", 0, FlagForm::Ignored},
    {"INPORT", kPortIn, FlagForm::Switch},
    {"OUTPORT", kPortOut, FlagForm::Switch},
    {"STATICPORT", kPortStatic, FlagForm::Switch},
    {"NEEDCONNECTION", kPortNeedsConnection, FlagForm::Switch},
    {"MULTIPLE", kPortMultiple, FlagForm::Switch},
    {"PORTONLY", kPortOnly, FlagForm::Switch},
    {"CREATEPORT", kPortCreated, FlagForm::MaybeInteger},
    {"MINPORTS", kPortsMin, FlagForm::Integer},
    {"MAXPORTS", kPortsMax, FlagForm::Integer},
    {"NOTMOVABLE", kPortNotMovable, FlagForm::Switch},
    {"EDITPORT", kPortEditable, FlagForm::Switch},
};

struct Word {
    std::string_view keyword;
    Int32 value;
};

constexpr Word kUnits[] = {
    {"REAL", DESC_UNIT_FLOAT},    {"LONG", DESC_UNIT_INT},    {"PERCENT", DESC_UNIT_PERCENT},
    {"DEGREE", DESC_UNIT_DEGREE}, {"METER", DESC_UNIT_METER}, {"TIME", DESC_UNIT_TIME},
};

constexpr Word kAnimation[] = {{"OFF", DESC_ANIMATE_OFF}, {"ON", DESC_ANIMATE_ON}, {"MIX", DESC_ANIMATE_MIX}};

constexpr Word kGuis[] = {
    {"REALSLIDER", kGuiRealSlider},         {"REALSLIDERONLY", kGuiRealSliderOnly},
    {"LONGSLIDER", kGuiLongSlider},         {"CYCLE", kGuiCycle},
    {"CYCLEBUTTON", kGuiCycleButton},       {"MULTISTRING", kGuiMultiString},
    {"SUBDESCRIPTION", kGuiSubDescription},
};

constexpr Word kNodeTypes[] = {
    {"Obase", Obase},     {"Onull", Onull},         {"Opoint", Opoint},           {"Opolygon", Opolygon},
    {"Ospline", Ospline}, {"Oinstance", Oinstance}, {"Olayer", Olayer},           {"Tbase", Tbase},
    {"Mbase", Mbase},     {"Xbase", Xbase},         {"Tbaselist2d", Tbaselist2d},
};

template <class Row, size_t Count> const Row* find(const Row (&rows)[Count], std::string_view keyword)
{
    const auto found = std::ranges::find(rows, keyword, &Row::keyword);
    return found == std::end(rows) ? nullptr : found;
}

template <size_t Count> std::optional<Int32> findValue(const Word (&words)[Count], std::string_view keyword)
{
    const Word* word = find(words, keyword);
    return word ? std::optional(word->value) : std::nullopt;
}

} // namespace

const ElementType* FindElementType(std::string_view keyword)
{
    return find(kElementTypes, keyword);
}

const Flag* FindFlag(std::string_view keyword)
{
    return find(kFlags, keyword);
}

std::optional<Int32> FindUnit(std::string_view word)
{
    return findValue(kUnits, word);
}

std::optional<Int32> FindAnimation(std::string_view word)
{
    return findValue(kAnimation, word);
}

std::optional<Int32> FindGui(std::string_view word)
{
    return findValue(kGuis, word);
}

std::optional<Int32> FindNodeType(std::string_view word)
{
    return findValue(kNodeTypes, word);
}

} // namespace host
