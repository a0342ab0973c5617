#include "platform/qt/base/QtTitles.h"

namespace velmora {

namespace {

/// Whether "(&F)" stands at the place.
bool isMarkInParentheses(const QString& text, int at) {
    return at + 3 < text.size() && text[at] == QLatin1Char('(') &&
           text[at + 1] == QLatin1Char('&') && text[at + 2] != QLatin1Char('&') &&
           text[at + 3] == QLatin1Char(')');
}

}  // namespace

std::string titleFromText(const QString& text) {
    QString title;
    title.reserve(text.size());
    const int size = static_cast<int>(text.size());
    for (int i = 0; i < size && text[i] != QLatin1Char('\t'); ++i) {
        if (isMarkInParentheses(text, i)) {
            while (title.endsWith(QLatin1Char(' '))) title.chop(1);
            i += 3;
        } else if (text[i] != QLatin1Char('&')) {
            title += text[i];
        } else if (i + 1 < size && text[i + 1] == QLatin1Char('&')) {
            title += text[++i];
        }
    }
    return title.trimmed().toStdString();
}

QString textFromTitle(const std::string& title) {
    QString text = QString::fromStdString(title);
    text.replace(QLatin1Char('&'), QLatin1String("&&"));
    text.replace(QLatin1Char('\t'), QLatin1Char(' '));
    return text;
}

}  // namespace velmora
