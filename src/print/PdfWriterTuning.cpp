#include "print/PdfWriterTuning.h"

#include <mutex>
#include <zlib.h>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace {

// Scopes open on this thread; several targets may be alive at once, and
// they need not close in order.
thread_local int t_openScopes = 0;

// zlib's DEF_MEM_LEVEL, which deflateInit_() passes on; zutil.h, where it is
// defined, is not installed.
constexpr int kDefaultMemLevel = 8;

constexpr int kSheetsBetweenTrims = 64;

void keepStreamBuffersInHeap() {
#if defined(__GLIBC__)
    // Qt's PDF writer reads each page's stream through two 16 MB buffers.
    // Above glibc's mmap threshold every one of them is mapped, faulted in
    // and unmapped again, two per sheet; below it they reuse heap that was
    // touched already. The trim threshold keeps that heap from going back
    // to the system between sheets. Neither changes what is allocated.
    static std::once_flag once;
    std::call_once(once, [] {
        mallopt(M_MMAP_THRESHOLD, 32 * 1024 * 1024);
        mallopt(M_TRIM_THRESHOLD, 64 * 1024 * 1024);
    });
#endif
}

} // namespace

PdfWriterTuning::PdfWriterTuning() {
    keepStreamBuffersInHeap();
    ++t_openScopes;
}

PdfWriterTuning::~PdfWriterTuning() {
    --t_openScopes;
}

void PdfWriterTuning::sheetWritten() {
#if defined(__GLIBC__)
    // Kept in the heap, the stream buffers of sheet after sheet leave holes
    // there that the trim threshold keeps: unreturned, they would make the
    // memory grow with the page count.
    if (++m_sheets % kSheetsBetweenTrims == 0) {
        malloc_trim(0);
    }
#endif
}

int PdfWriterTuning::defaultLevelInForce() {
    return t_openScopes > 0 ? FastLevel : Z_DEFAULT_COMPRESSION;
}

// Found before zlib's own by the dynamic linker, for Qt as for us: what
// zlib's deflateInit_() does, with the default level as the thread's scope
// says.
extern "C" __attribute__((visibility("default"))) int
deflateInit_(z_streamp stream, int level, const char* version, int streamSize) {
    if (level == Z_DEFAULT_COMPRESSION) {
        level = PdfWriterTuning::defaultLevelInForce();
    }
    return deflateInit2_(stream, level, Z_DEFLATED, MAX_WBITS, kDefaultMemLevel, Z_DEFAULT_STRATEGY,
                         version, streamSize);
}
