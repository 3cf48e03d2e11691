#include "ui/icons/SvgLimits.h"

#include "ui/icons/IconImage.h"

#include <QHash>
#include <QRegularExpression>
#include <QString>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

namespace hollowfernpike {

namespace {

constexpr std::size_t mostElements = 20'000;
constexpr std::size_t mostDrawnElements = 100'000;
constexpr std::size_t greatestDepth = 100;

struct Element {
    std::vector<std::size_t> children;
    QStringList repeated; ///< identifiers of the elements that are drawn again in its place
};

/// The picture of an image element, as the toolkit finds it; absent if it is another file.
std::optional<QByteArray> embeddedPicture(const QString& reference) {
    static const QString mark = QStringLiteral("base64,");
    const auto begin = reference.lastIndexOf(mark);
    if (!reference.trimmed().startsWith(QLatin1String("data:")) || begin < 0) {
        return std::nullopt;
    }
    return QByteArray::fromBase64(reference.mid(begin + mark.size()).toLatin1());
}

/// What the elements of a drawing are and which of them repeat others.
class SvgOutline {
public:
    /// False if the drawing is refused on sight.
    bool read(const QByteArray& text) {
        QXmlStreamReader reader(text);
        while (!reader.atEnd()) {
            switch (reader.readNext()) {
            case QXmlStreamReader::StartElement:
                if (!begin(reader)) {
                    return false;
                }
                break;
            case QXmlStreamReader::EndElement:
                open_.pop_back();
                break;
            case QXmlStreamReader::ProcessingInstruction: // such as the name of a style sheet
                return false;
            default:
                break;
            }
        }
        return !reader.hasError() && !elements_.empty();
    }

    /// Whether all that is drawn, repetitions included, stays within bounds.
    bool isBounded() {
        drawn_.assign(elements_.size(), unknown);
        return !elements_.empty() && drawnIn(0, 0) <= mostDrawnElements;
    }

private:
    static constexpr std::size_t unknown = static_cast<std::size_t>(-1);
    static constexpr std::size_t tooMany = mostDrawnElements + 1;

    bool begin(const QXmlStreamReader& reader) {
        if (elements_.size() == mostElements || open_.size() == greatestDepth ||
            (elements_.empty() && reader.name() != QLatin1String("svg"))) {
            return false;
        }
        const auto number = elements_.size();
        elements_.emplace_back();
        if (!open_.empty()) {
            elements_[open_.back()].children.push_back(number);
        }
        open_.push_back(number);
        return takeAttributes(reader, number);
    }

    /// False if one of them names another file.
    bool takeAttributes(const QXmlStreamReader& reader, std::size_t number) {
        const bool isLink = reader.name() == QLatin1String("a");
        const auto attributes = reader.attributes();
        return std::ranges::all_of(attributes, [&](const QXmlStreamAttribute& attribute) {
            return take(attribute, isLink, number);
        });
    }

    bool take(const QXmlStreamAttribute& attribute, bool isLink, std::size_t number) {
        static const QRegularExpression inPlace(QStringLiteral(R"(url\(\s*['"]?#([^)'"]*))"));
        const QString value = attribute.value().toString();
        if (attribute.name() == QLatin1String("href")) {
            return isLink || takeReference(value.trimmed(), number);
        }
        if (attribute.name() == QLatin1String("id")) {
            identified_.insert(value, number);
        } else if (const auto found = inPlace.match(value); found.hasMatch()) {
            elements_[number].repeated.append(found.captured(1));
        }
        return true;
    }

    bool takeReference(const QString& reference, std::size_t number) {
        if (reference.startsWith('#')) {
            elements_[number].repeated.append(reference.mid(1));
            return true;
        }
        const auto picture = embeddedPicture(reference);
        return reference.isEmpty() || (picture && isHarmlessPicture(*picture));
    }

    std::size_t drawnIn(std::size_t number, std::size_t depth) {
        if (depth > greatestDepth) {
            return tooMany;
        }
        if (drawn_[number] == unknown) {
            drawn_[number] = tooMany; // as long as it is being counted: it must not repeat itself
            drawn_[number] = std::min(tooMany, counted(elements_[number], depth + 1));
        }
        return drawn_[number];
    }

    std::size_t counted(const Element& element, std::size_t depth) {
        std::size_t sum = 1;
        for (const auto child : element.children) {
            sum += drawnIn(child, depth);
        }
        for (const QString& identifier : element.repeated) {
            if (const auto found = identified_.constFind(identifier);
                found != identified_.constEnd()) {
                sum += drawnIn(*found, depth);
            }
        }
        return sum;
    }

    std::vector<Element> elements_;
    std::vector<std::size_t> open_;
    std::vector<std::size_t> drawn_;
    QHash<QString, std::size_t> identified_;
};

} // namespace

bool isHarmlessSvg(const QByteArray& text) {
    SvgOutline outline;
    return outline.read(text) && outline.isBounded();
}

} // namespace hollowfernpike
