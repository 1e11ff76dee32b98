#include "slots.h"

#include <algorithm>

#include "library/trackfile.h"
#include "shell/app_state.h"
#include "shell/durable_file.h"
#include "shell/helpers.h"
#include "shell/ini_file.h"
#include "shell/ui_port.h"

namespace sonorit {

namespace {
const QString kGeneral = QStringLiteral("GENERAL");
constexpr int kMaxSlots = 32767;
}

QByteArray Encode_IDfile(const std::vector<std::int32_t>& ids)
{
    QByteArray out;
    out.reserve(static_cast<int>(ids.size() * 4));
    for (const std::int32_t id : ids) {
        const auto v = static_cast<std::uint32_t>(id);
        out.append(char(v)).append(char(v >> 8)).append(char(v >> 16)).append(char(v >> 24));
    }
    return out;
}

bool Write_IDfile(LibraryContext& c)
{
    return !c.lib.failAt("idfile") && Write_File_Durably(c.app.IDfile, Encode_IDfile(c.lib.Free_IDs));
}

bool Write_ID_Count(LibraryContext& c, int albumCount)
{
    QList<QPair<QString, QString>> keys{{QStringLiteral("ID_COUNT"), QString::number(c.lib.ID_COUNT)}};
    if (albumCount >= 0)
        keys.append({QStringLiteral("ALBUM_COUNT"), QString::number(albumCount)});
    return IniFile(c.app.Library_File).write(kGeneral, keys);
}

bool Write_Album_Count(LibraryContext& c)
{
    return WritePrivateProfileString(kGeneral, QStringLiteral("ALBUM_COUNT"),
                                     QString::number(c.lib.MP3_List.count()), c.app.Library_File);
}

QString Get_ID(LibraryContext& c, int albumCount)
{
    std::vector<std::int32_t>& ids = c.lib.Free_IDs;
    // Slot counts live in 16 bits, and a library whose ID_COUNT lies beyond
    // them does not open any more: past the last slot no ID is handed out.
    const bool newSlot = ids.empty() || *std::min_element(ids.begin(), ids.end()) == 0;
    if (newSlot && c.lib.ID_COUNT >= kMaxSlots)
        return QString();
    // A slot is handed out only once the library files say so; a count that
    // cannot be written (a full disk) hands out none.
    if (ids.empty()) {
        ++c.lib.ID_COUNT;
        if (!Write_ID_Count(c, albumCount)) {
            --c.lib.ID_COUNT;
            return QString();
        }
        return QStringLiteral("TRACK ") + QString::number(c.lib.ID_COUNT);
    }
    // The smallest free ID goes last, so the lowest slot is reused first.
    for (size_t i = ids.size() - 1; i-- > 0;) {
        if (ids.back() > ids[i])
            std::swap(ids.back(), ids[i]);
    }
    if (ids.back() == 0) {
        // An IDfile shorter than its count read as zeros: issue a new slot.
        ++c.lib.ID_COUNT;
        if (!Write_ID_Count(c, albumCount)) {
            --c.lib.ID_COUNT;
            return QString();
        }
        ids.back() = c.lib.ID_COUNT;
    }
    const std::int32_t id = ids.back();
    ids.pop_back();
    if (!Write_IDfile(c)) {
        ids.push_back(id);
        return QString();
    }
    return QStringLiteral("TRACK ") + QString::number(id);
}

int Track_ID_Of(const QString& idColumn)
{
    return static_cast<int>(Val(idColumn.mid(6)));
}

bool Remove_Track_Record(LibraryContext& c, int id)
{
    // Each record writer makes its five attempts itself.
    if (id != c.lib.ID_COUNT) {
        if (!Blank_Track_Record(c, id))
            return false;
        c.lib.Free_IDs.push_back(id);
        Write_IDfile(c);
        return true;
    }
    if (!Truncate_At_Track_Record(c, id))
        return false;
    --c.lib.ID_COUNT;
    Write_ID_Count(c);
    return true;
}

void Remove_Track_Row(LibraryContext& c, int row)
{
    if (!Remove_Track_Record(c, Track_ID_Of(c.lib.MP3_List.field(row, ColID))))
        return;
    c.lib.MP3_List.removeAt(row);
    Write_Album_Count(c);
}

}  // namespace sonorit
