#pragma once

// Makes Qt's PDF writer cheaper on the calling thread while a scope is
// open: its page and font streams are deflated at a fast level instead of
// zlib's default, and its per-page stream buffers stay in the heap.
//
// Qt compresses every stream through zlib's deflateInit_() at the default
// level, which costs about a sixth of writing a long document's PDF, and
// offers no setting for it. This program defines deflateInit_() itself,
// with zlib's own meaning, and swaps only the default level for the fast
// one on a thread with an open scope; an explicit level is kept.
class PdfWriterTuning {
public:
    // zlib's deflate level for Qt's PDF streams: under half the default's
    // time for files about a quarter larger.
    static constexpr int FastLevel = 3;

    PdfWriterTuning();
    ~PdfWriterTuning();
    PdfWriterTuning(const PdfWriterTuning&) = delete;
    PdfWriterTuning& operator=(const PdfWriterTuning&) = delete;

    // Called after each sheet: gives the heap that the sheets before left
    // free back to the system now and then, so that the writer's memory
    // does not grow with the page count.
    void sheetWritten();

    // The level a default deflateInit_() gets on this thread now: FastLevel
    // inside a scope, zlib's default (-1) outside.
    static int defaultLevelInForce();

private:
    int m_sheets = 0;
};
