// The input is the file of an icon, as somebody who may write to a disk has made it.

#include "fuzz/Require.h"
#include "fuzz/Target.h"
#include "ui/icons/IconImage.h"

#include <QGuiApplication>

#include <array>

namespace hollowfernpike::test {
namespace {

/// What drawings with text need. Kept until the end.
void makeApplication() {
    static std::array<char, 5> name{"icon"};
    static std::array<char, 10> option{"-platform"};
    static std::array<char, 10> platform{"offscreen"};
    static std::array<char*, 4> arguments{name.data(), option.data(), platform.data(), nullptr};
    static int count = 3;
    static const auto* const application = new QGuiApplication(count, arguments.data());
    require(application != nullptr, "there is a toolkit");
}

void requireWithin(const QImage& image, const QSize& size) {
    require(image.width() <= size.width() && image.height() <= size.height(),
            "an icon is no larger than it was asked for");
}

} // namespace
} // namespace hollowfernpike::test

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace hollowfernpike;
    test::makeApplication();
    const auto bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    for (const QSize wanted : {QSize(32, 32), QSize(1, 1)}) {
        const QImage image = iconImage(bytes, wanted);
        test::requireWithin(image, wanted);
        test::require(image == iconImage(bytes, wanted), "a file has one icon");
    }
    return 0;
}
