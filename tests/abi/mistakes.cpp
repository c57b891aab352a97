// Mistakes that a newcomer could make, each behind its own switch. They must not compile, and say why in one sentence.
#include "api/Flatten.h"
#include "catalog/Field.h"

namespace brimlet {

struct Note
{
    quint32 id = 0;
    std::optional<QString> text;
    std::optional<quint32> color;
#ifdef MISTAKE_UNREADABLE_MEMBER
    std::optional<float> weight;
#endif
};

struct NotesTable : Table
{
    NotesTable() : Table("Notes") {}

    IdFieldDesc id = idField("Id", "id", "id", "id");
    FieldDesc text = field("Text", "text");
    FieldDesc color = field("Color", "color");
    FieldDesc weight = field("Weight", "weight");
};

struct FlatNote
{
    uint32_t id;
    uint16_t *text;
#ifdef MISTAKE_WRONG_CELL
    uint8_t *color;
#else
    uint32_t *color;
#endif
};

namespace NoteFields {

inline constexpr auto id = mapped(&Note::id, &NotesTable::id);
inline constexpr auto text = mapped(&Note::text, &NotesTable::text);
inline constexpr auto color = mapped(&Note::color, &NotesTable::color);
#ifdef MISTAKE_UNREADABLE_MEMBER
inline constexpr auto weight = mapped(&Note::weight, &NotesTable::weight);
#endif
inline constexpr auto tableOrder = inOrder(id, text, color);

} // namespace NoteFields

template<>
struct FlatForm<Note>
{
    using Flat = FlatNote;
    static constexpr auto fields = std::make_tuple(flatField(&Flat::id, &Note::id), flatField(&Flat::text, &Note::text),
                                                   flatField(&Flat::color, &Note::color));
};

void use(FlatNote &flat, const Note &note)
{
    columnsOf(NotesTable(), NoteFields::tableOrder);
    fillFlat(flat, note);
}

} // namespace brimlet
