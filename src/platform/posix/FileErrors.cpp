#include "platform/posix/FileErrors.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include <locale.h>

namespace hollowfernpike::posix {

namespace {

constexpr std::array<std::pair<int, std::string_view>, 19> japaneseWordings{{
    {ENOENT, "ファイルまたはフォルダがありません"},
    {EACCES, "アクセス権がありません"},
    {EPERM, "操作が許可されていません"},
    {ENOSPC, "ディスクに空き容量がありません"},
    {EROFS, "読み取り専用のファイルシステムです"},
    {EDQUOT, "ディスクの使用量が割り当てを超えています"},
    {EISDIR, "フォルダです"},
    {ENOTDIR, "フォルダではありません"},
    {EEXIST, "既に存在します"},
    {ELOOP, "シンボリックリンクが循環しています"},
    {ENAMETOOLONG, "名前が長すぎます"},
    {EIO, "入出力エラーが発生しました"},
    {EFBIG, "ファイルが大きすぎます"},
    {EMFILE, "開いているファイルが多すぎます"},
    {ENFILE, "システム全体で開いているファイルが多すぎます"},
    {EBUSY, "使用中です"},
    {ETXTBSY, "実行中のプログラムです"},
    {ENOMEM, "メモリが足りません"},
    {ENXIO, "デバイスがありません"},
}};

/// The system's own words, in English whatever the locale of the process.
std::string systemText(int number) {
#ifdef __APPLE__ // its C library has no strerror_l() and no other words
    return std::strerror(number);
#else
    static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return ::strerror_l(number, plain);
#endif
}

std::string japaneseText(int number) {
    for (const auto& [known, wording] : japaneseWordings) {
        if (known == number) {
            return std::string{wording};
        }
    }
    return systemText(number);
}

platform::FileError describe(FileOperation operation, const std::filesystem::path& path, int number,
                             const std::string& japanese, const std::string& english) {
    const auto& shown = path.native();
    std::string japaneseStart;
    std::string englishStart;
    switch (operation) {
    case FileOperation::read:
        japaneseStart = "「" + shown + "」を読み込めません: ";
        englishStart = "Cannot read \"" + shown + "\": ";
        break;
    case FileOperation::write:
        japaneseStart = "「" + shown + "」に書き込めません: ";
        englishStart = "Cannot write \"" + shown + "\": ";
        break;
    case FileOperation::remove:
        japaneseStart = "「" + shown + "」を削除できません: ";
        englishStart = "Cannot remove \"" + shown + "\": ";
        break;
    case FileOperation::createDirectory:
        japaneseStart = "フォルダ「" + shown + "」を作成できません: ";
        englishStart = "Cannot create the folder \"" + shown + "\": ";
        break;
    }
    return {path, std::error_code{number, std::generic_category()}, japaneseStart + japanese,
            englishStart + english};
}

} // namespace

platform::FileError fileError(FileOperation operation, const std::filesystem::path& path,
                              int number) {
    return describe(operation, path, number, japaneseText(number), systemText(number));
}

platform::FileError notARegularFile(FileOperation operation, const std::filesystem::path& path) {
    return describe(operation, path, EINVAL, "通常のファイルではありません", "Not a regular file");
}

platform::FileError notPrivate(const std::filesystem::path& directory) {
    return describe(FileOperation::createDirectory, directory, EEXIST,
                    "既に存在し、ユーザー専用ではありません",
                    "It exists and is not private to the user");
}

} // namespace hollowfernpike::posix
