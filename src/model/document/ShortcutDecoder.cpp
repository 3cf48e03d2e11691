#include "model/document/ShortcutDecoder.h"

#include "model/document/DecodingError.h"
#include "model/document/ShortcutListReader.h"
#include "model/json/JsonNumbers.h"
#include "model/json/Utf8.h"

#include <algorithm>

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

namespace hollowfernpike {

namespace {

using rapidjson::SizeType;

/// Passes the reader's events on to the list. Checks that strings are UTF-8, because the reader
/// lets a lone low surrogate through. Takes the text of a number from the document, because the
/// stream may have a zero in its place.
class EventHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, EventHandler> {
public:
    EventHandler(std::string_view document, const rapidjson::MemoryStream& stream,
                 ShortcutListReader& list)
        : document_(document), stream_(stream), list_(list) {}

    bool Null() { return pass(JsonType::null, "null"); }
    bool Bool(bool value) { return pass(JsonType::boolean, value ? "true" : "false"); }
    bool RawNumber(const char*, SizeType length, bool) {
        return pass(JsonType::number, document_.substr(stream_.Tell() - length, length));
    }
    bool String(const char* text, SizeType length, bool) {
        const std::string_view string{text, length};
        return firstInvalidUtf8(string) == std::string_view::npos && pass(JsonType::string, string);
    }
    bool Key(const char* text, SizeType length, bool) {
        const std::string_view key{text, length};
        list_.key(key);
        return firstInvalidUtf8(key) == std::string_view::npos;
    }
    bool StartObject() { return open(JsonType::object); }
    bool EndObject(SizeType) { return close(); }
    bool StartArray() { return open(JsonType::array); }
    bool EndArray(SizeType) { return close(); }

private:
    bool pass(JsonType type, std::string_view text) {
        list_.value(type, text);
        return true;
    }
    bool open(JsonType type) {
        list_.open(type);
        return true;
    }
    bool close() {
        list_.close();
        return true;
    }

    std::string_view document_;
    const rapidjson::MemoryStream& stream_;
    ShortcutListReader& list_;
};

/// Parses `text`: the document, or a copy of it with zeros for long numbers.
rapidjson::ParseResult read(std::string_view document, std::string_view text,
                            ShortcutListReader& list) {
    rapidjson::MemoryStream stream{text.data(), text.size()};
    EventHandler handler{document, stream, list};
    rapidjson::Reader reader;
    // Iterative, because the nesting of a bad document must not exhaust the stack; numbers as
    // text, because a detour through double would round flag words.
    constexpr unsigned flags =
        rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    const auto result = reader.Parse<flags>(stream, handler);
    // The stream marks its end by a zero byte, so the reader also stops at one in the document.
    if (!result.IsError() && stream.Tell() < text.size()) {
        return {rapidjson::kParseErrorDocumentRootNotSingular, stream.Tell()};
    }
    return result;
}

TextPosition positionOf(std::string_view document, std::size_t offset) {
    const auto before = document.substr(0, offset);
    const auto lineStart = before.rfind('\n') + 1;
    const auto isCharacterStart = [](char byte) { return (byte & 0xC0) != 0x80; };
    return {static_cast<std::size_t>(std::ranges::count(before, '\n')) + 1,
            static_cast<std::size_t>(
                std::ranges::count_if(before.substr(lineStart), isCharacterStart)) +
                1};
}

Wording reasonFor(rapidjson::ParseErrorCode code, bool atEnd) {
    switch (code) {
    case rapidjson::kParseErrorDocumentEmpty:
        return {"文書が空です", "the document is empty"};
    case rapidjson::kParseErrorDocumentRootNotSingular:
        return {"文書の終わりの後に余分な文字があります", "there is text after the document's end"};
    case rapidjson::kParseErrorTermination:
    case rapidjson::kParseErrorStringUnicodeSurrogateInvalid:
        return {"文字列にサロゲートの片割れがあります", "a string holds half of a surrogate pair"};
    default:
        return atEnd ? Wording{"文書が途中で終わっています", "the document ends too early"}
                     : Wording{"予期しない文字です", "unexpected character"};
    }
}

DecodingError syntaxError(std::string_view document, rapidjson::ParseErrorCode code,
                          std::size_t offset) {
    const auto invalid = firstInvalidUtf8(document);
    if (invalid <= offset) {
        return DecodingError::syntax(
            positionOf(document, invalid),
            {"UTF-8ではないバイトがあります", "there is a byte that is not UTF-8"});
    }
    return DecodingError::syntax(positionOf(document, offset),
                                 reasonFor(code, offset >= document.size()));
}

std::string_view withoutByteOrderMark(std::string_view document) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return document.starts_with(mark) ? document.substr(mark.size()) : document;
}

} // namespace

std::vector<AppShortcut> decodeShortcuts(std::string_view document) {
    document = withoutByteOrderMark(document);
    ShortcutListReader list;
    auto result = read(document, document, list);
    // The reader refuses numbers too large for a double, although it only passes on their text.
    if (result.Code() == rapidjson::kParseErrorNumberTooBig) {
        list = {};
        result = read(document, withZerosForNumbers(document), list);
    }
    if (result.IsError()) {
        throw syntaxError(document, result.Code(), result.Offset());
    }
    return list.take();
}

} // namespace hollowfernpike
