#include "platform/posix/FileErrors.h"

#include <cerrno>
#include <map>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

using posix::fileError;
using posix::FileOperation;

TEST(FileErrorsTest, NameTheOperationThePathAndTheReason) {
    const auto read = fileError(FileOperation::read, "/a b", EACCES);
    EXPECT_EQ(read.japanese(), "「/a b」を読み込めません: アクセス権がありません");
    EXPECT_EQ(read.english(), "Cannot read \"/a b\": Permission denied");
    EXPECT_EQ(read.path(), "/a b");
    EXPECT_EQ(read.code(), std::errc::permission_denied);
    EXPECT_STREQ(read.what(), read.english().c_str());

    const auto write = fileError(FileOperation::write, "/a", ENOSPC);
    EXPECT_EQ(write.japanese(), "「/a」に書き込めません: ディスクに空き容量がありません");
    EXPECT_EQ(write.english(), "Cannot write \"/a\": No space left on device");

    const auto remove = fileError(FileOperation::remove, "/a", EROFS);
    EXPECT_EQ(remove.japanese(), "「/a」を削除できません: 読み取り専用のファイルシステムです");
    EXPECT_EQ(remove.english(), "Cannot remove \"/a\": Read-only file system");

    const auto make = fileError(FileOperation::createDirectory, "/a", EROFS);
    EXPECT_EQ(make.japanese(),
              "フォルダ「/a」を作成できません: 読み取り専用のファイルシステムです");
    EXPECT_EQ(make.english(), "Cannot create the folder \"/a\": Read-only file system");
}

TEST(FileErrorsTest, HaveJapaneseWordsForTheUsualReasons) {
    const std::map<int, std::string> wordings{
        {ENOENT, "ファイルまたはフォルダがありません"},
        {EACCES, "アクセス権がありません"},
        {EPERM, "操作が許可されていません"},
        {ENOSPC, "ディスクに空き容量がありません"},
        {EROFS, "読み取り専用のファイルシステムです"},
        {EDQUOT, "ディスクの使用量が割り当てを超えています"},
        {EISDIR, "フォルダです"},
        {ENOTDIR, "フォルダではありません"},
        {ELOOP, "シンボリックリンクが循環しています"},
        {ENAMETOOLONG, "名前が長すぎます"},
        {EIO, "入出力エラーが発生しました"},
        {EFBIG, "ファイルが大きすぎます"},
        {EMFILE, "開いているファイルが多すぎます"},
    };
    for (const auto& [number, wording] : wordings) {
        EXPECT_EQ(fileError(FileOperation::read, "/a", number).japanese(),
                  "「/a」を読み込めません: " + wording);
    }
}

TEST(FileErrorsTest, PassTheSystemsWordsOnForOtherReasons) {
    EXPECT_EQ(fileError(FileOperation::read, "/a", ESTALE).japanese(),
              "「/a」を読み込めません: Stale file handle");
    EXPECT_EQ(fileError(FileOperation::read, "/a", 99999).english(),
              "Cannot read \"/a\": Unknown error 99999");
}

TEST(FileErrorsTest, OfAPipeOrDeviceSayThatItIsNoFile) {
    const auto error = posix::notARegularFile(FileOperation::read, "/dev/null");
    EXPECT_EQ(error.japanese(), "「/dev/null」を読み込めません: 通常のファイルではありません");
    EXPECT_EQ(error.english(), "Cannot read \"/dev/null\": Not a regular file");
    EXPECT_EQ(error.code(), std::errc::invalid_argument);
}

} // namespace
} // namespace hollowfernpike::test
