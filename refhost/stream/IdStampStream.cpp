// IdStamp on a stream. The current form (stamp version 2 and later) is the three words, 4 bytes
// each; the old form (versions 0 and 1) is the first two words in 2 bytes each and the third in
// 4. A read that meets the end of the file leaves the stamp as it was.
#include "host/IdStamp.h"

#include "host/PStream.h"
#include "host/StreamFile.h"

void IdStamp::pack(PStream& s) const {
    s.file->setUnsignedLong(a_);
    s.file->setUnsignedLong(b_);
    s.file->setUnsignedLong(c_);
}

void IdStamp::unpack(PStream& s, int stampVersion) {
    StreamFile& f = *s.file;
    unsigned a = 0, b = 0, c = 0;
    if (stampVersion >= 2) {
        if (!f.getUnsignedLong(a) || !f.getUnsignedLong(b) || !f.getUnsignedLong(c))
            return;
    } else {
        unsigned short a16 = 0, b16 = 0;
        if (!f.getUnsignedShort(a16) || !f.getUnsignedShort(b16) || !f.getUnsignedLong(c))
            return;
        a = a16;
        b = b16;
    }
    *this = IdStamp(a, b, c);
}
