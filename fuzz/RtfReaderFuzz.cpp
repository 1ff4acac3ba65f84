// libFuzzer entry for the RTF reader; built with -DQM_BUILD_FUZZ=ON and clang.

#include "RtfFuzzTarget.h"

#include <QGuiApplication>
#include <memory>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static std::unique_ptr<QGuiApplication> application =
        std::make_unique<QGuiApplication>(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    readRtfForFuzzing(data, size);
    return 0;
}
