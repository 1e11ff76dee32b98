#include "id3v2_writer_walk.h"

#include <QIODevice>
#include <array>
#include <cstring>

#include "frame_names.h"
#include "id3v2_frames.h"
#include "id3v2_writer_target.h"
#include "shell/codepage.h"
#include "tag2_header.h"

namespace sonorit {

namespace {
// The frames a writer makes itself; old ones of these names never survive,
// so an emptied field really empties the tag and several COMM become one.
constexpr std::array<const char*, 10> kOwn = {"TPE1", "TALB", "TRCK", "TYER", "TIT2",
                                              "TLEN", "TCON", "TFRM", "TPE2", "COMM"};

bool isOwn(const QByteArray& id)
{
    for (const char* name : kOwn) {
        if (std::memcmp(name, id.constData(), 4) == 0)
            return true;
    }
    return false;
}

bool hasLowerCase(const QByteArray& id)
{
    for (const QChar c : fromCp1252(id)) {
        if (c.isLower())
            return true;
    }
    return false;
}

enum class Action { Skip, Copy, Stop, Fail };

Action pictureAction(ByteSource& source, qint64 position, quint32 frameSize, const KeepRules& rules)
{
    // A MIME type without its terminator would take the picture type from
    // the bytes of whatever follows the frame; such a frame is no front cover.
    const PictureHead head = Read_Picture_Head(source, position);
    const bool front = head.ok && head.consumed <= qint64(frameSize) && head.pictureType == 3;
    if (front && rules.frontCoversGo)
        return Action::Skip;
    if (front && !rules.keepFrontCovers)
        return Action::Skip;
    if (!front && rules.dropOtherPictures)
        return Action::Skip;
    return Action::Copy;
}

Action decide(ByteSource& source, qint64 position, const FrameHeader& frame, const KeepRules& rules)
{
    const QByteArray& id = frame.Frame_ID;
    if (isOwn(id) || (rules.syltIsOwn && id == "SYLT"))
        return Action::Skip;
    if (id == "SYLT")
        return rules.keepSylt ? Action::Copy : Action::Skip;
    if (id == "APIC")
        return pictureAction(source, position, frame.Frame_Size, rules);
    if (Is_Known_Frame(id))
        return rules.dropUnlisted ? Action::Skip : Action::Copy;
    if (id[0] != 'T' && id[0] != 'W')
        return Action::Stop;  // padding or garbage: dropped with the rest
    if (hasLowerCase(id))
        return Action::Fail;
    return rules.dropUnlisted ? Action::Skip : Action::Copy;
}
}  // namespace

WalkEnd Copy_Kept_Frames(ByteSource& source, const KeepRules& rules, QIODevice& out)
{
    const auto tag = Find_Tag2(source);
    if (!tag)
        return WalkEnd::Done;
    const qint64 end = tag->End();
    for (qint64 p = tag->firstFramePosition(); p < end;) {
        const auto frame = Read_Frame_Header(source, p);
        if (!frame)
            break;
        switch (decide(source, p, *frame, rules)) {
        case Action::Stop:
            return WalkEnd::Done;
        case Action::Fail:
            return WalkEnd::LowerCaseName;
        case Action::Copy:
            // The header as read, flags included, even when they say
            // compressed or encrypted: the frame is not ours to interpret.
            if (!Copy_Source_Range(source, p, qint64(frame->Frame_Size) + 10, out))
                return WalkEnd::CopyFailed;
            break;
        case Action::Skip:
            break;
        }
        p += qint64(frame->Frame_Size) + 10;
    }
    return WalkEnd::Done;
}

}  // namespace sonorit
