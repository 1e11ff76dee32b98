#include "frame_names.h"

#include <array>
#include <cstring>

namespace sonorit {

namespace {
// The frames whose content the reader takes (SYLT is passed by in the walk
// but belongs here; TFRM is the program's own frame of audio frames).
constexpr std::array<const char*, 12> kRead = {"TPE1", "TALB", "TRCK", "TYER", "TIT2", "TPE2",
                                               "TLEN", "TCON", "SYLT", "APIC", "TFRM", "COMM"};

// The frames of the format that the reader knows and passes by.
constexpr std::array<const char*, 62> kKnown = {
    "AENC", "COMR", "ENCR", "EQUA", "ETCO", "GEOB", "GRID", "IPLS", "LINK", "MCDI", "MLLT",
    "OWNE", "PRIV", "PCNT", "POPM", "POSS", "RBUF", "RVAD", "RVRB", "SYTC", "TBPM", "TCOM",
    "TCOP", "TDAT", "TDLY", "TENC", "TEXT", "TFLT", "TIME", "TIT1", "TIT3", "TKEY", "TLAN",
    "TLEN", "TMED", "TOAL", "TOFN", "TOLY", "TOPE", "TORY", "TOWN", "TPE3", "TPE4", "TPOS",
    "TPUB", "TRDA", "TRSN", "TRSO", "TSIZ", "TSRC", "TSSE", "UFID", "USER", "USLT", "WCOM",
    "WCOP", "WOAF", "WOAR", "WOAS", "WORS", "WPAY", "WPUB"};

template <std::size_t N>
bool contains(const std::array<const char*, N>& names, const QByteArray& id)
{
    if (id.size() != 4)
        return false;
    for (const char* n : names) {
        if (std::memcmp(n, id.constData(), 4) == 0)
            return true;
    }
    return false;
}
}  // namespace

FrameClass Classify_Frame(const QByteArray& id)
{
    if (contains(kRead, id))
        return FrameClass::Read;
    if (contains(kKnown, id))
        return FrameClass::Known;
    if (!id.isEmpty() && (id[0] == 'T' || id[0] == 'W'))
        return FrameClass::OtherTW;
    return FrameClass::Stop;
}

bool Is_Known_Frame(const QByteArray& id) { return contains(kKnown, id); }

}  // namespace sonorit
