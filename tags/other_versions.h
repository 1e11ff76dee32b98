#pragma once
// Tags of versions 2.4 and 2.2, read when the user asks for it: such a tag is
// translated into the program's own v2.3 layout, and the file is then seen as
// that tag followed by the audio. Reader, writer and frame analysis work on
// the view unchanged, so the next write stores every field (covers included)
// as v2.3.
#include <QByteArray>
#include <optional>

#include "byte_source.h"

namespace sonorit {

struct TranslatedTag {
    QByteArray tag;          // a complete v2.3 tag, header included, no padding
    qint64 audioStart = 0;   // 1-based position behind the foreign tag (and its footer)
};

// The translation of the v2.4 or v2.2 tag at the start of `src`; nothing for
// a file without one (a v2.3 tag included) or a v2.2 tag compressed as a whole.
// Frames whose content cannot be read (encrypted ones) and names that the
// v2.3 walk would take for the end of the tag are left out.
std::optional<TranslatedTag> Translate_Other_Tag(ByteSource& src);

// The translated tag in front of the source from its audio on.
class SplicedSource final : public ByteSource {
public:
    SplicedSource(QByteArray head, ByteSource& rest, qint64 restOffset);
    qint64 size() const override { return head_.size() + rest_.size() - restOffset_; }
    qint64 readAt(qint64 offset, char* dst, qint64 n) override;

private:
    QByteArray head_;
    ByteSource& rest_;
    qint64 restOffset_;  // 0-based offset in `rest` of the first byte shown behind the head
};

// `src` as the tag engine should see it: translated when reading other
// versions is on and the file has such a tag, otherwise `src` itself.
class TagView {
public:
    TagView(ByteSource& src, bool readOtherVersions);
    ByteSource& source() { return spliced_ ? static_cast<ByteSource&>(*spliced_) : src_; }

private:
    ByteSource& src_;
    std::optional<SplicedSource> spliced_;
};

}  // namespace sonorit
