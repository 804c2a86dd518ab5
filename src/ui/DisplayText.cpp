#include "ui/DisplayText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>

#include <QChar>
#include <QDateTime>
#include <QStringDecoder>

namespace zelnor::ui {

namespace {

constexpr char16_t kDelete = 0x7F;
constexpr char16_t kFirstControlPicture = 0x2400;
constexpr char16_t kDeletePicture = 0x2421;

bool isAsciiControl(char16_t unit) { return unit < u' ' || unit == kDelete; }

bool isInvisibleActor(char16_t unit) {
  const auto within = [unit](char16_t first, char16_t last) {
    return unit >= first && unit <= last;
  };
  return within(0x80, 0x9F)         // C1 controls
         || within(0x200E, 0x200F)  // left-to-right and right-to-left marks
         || unit == 0x061C          // Arabic letter mark
         || within(0x2028, 0x202E)  // line and paragraph separators, embeddings and overrides
         || within(0x2066, 0x2069)  // isolates
         || unit == 0xFEFF;         // zero width no-break space
}

QString visible(char16_t unit) {
  if (unit == kDelete) return {QChar(kDeletePicture)};
  if (isAsciiControl(unit)) return {QChar(kFirstControlPicture + unit)};
  return QStringLiteral(u"⟨U+%1⟩").arg(static_cast<uint>(unit), 4, 16, QLatin1Char('0')).toUpper();
}

double rounded(double value, int digits) {
  const double factor = std::pow(10.0, digits);
  return std::round(value * factor) / factor;
}

}  // namespace

QString displayText(std::string_view bytes) {
  // Qt's plain conversion would swallow a byte order mark at the start.
  QStringDecoder decode(QStringDecoder::Utf8,
                        QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
  QString text = decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
  const auto needsCare = [](QChar c) {
    return isAsciiControl(c.unicode()) || isInvisibleActor(c.unicode());
  };
  if (std::ranges::none_of(text, needsCare)) return text;

  QString shown;
  for (const QChar c : text) shown += needsCare(c) ? visible(c.unicode()) : QString(c);
  return shown;
}

QString displayFolder(std::string_view path) {
  const auto slash = path.rfind('/');
  if (slash == std::string_view::npos) return {};
  return displayText(slash == 0 ? "/" : path.substr(0, slash));
}

QLocale displayLocale() {
  static const QLocale locale = QLocale::system().language() == QLocale::C
                                    ? QLocale(QLocale::Chinese, QLocale::China)
                                    : QLocale::system();
  return locale;
}

QString sizeText(std::int64_t bytes, const QLocale& locale) {
  constexpr double kStep = 1000;
  if (static_cast<double>(bytes) < kStep) return locale.formattedDataSize(bytes);
  // Each with its digits after the point.
  static constexpr std::array kUnits{std::pair("KB", 0), std::pair("MB", 1), std::pair("GB", 2),
                                     std::pair("TB", 2), std::pair("PB", 2), std::pair("EB", 2)};
  auto value = static_cast<double>(bytes) / kStep;
  const auto* unit = kUnits.begin();
  for (; std::next(unit) != kUnits.end() && rounded(value, unit->second) >= kStep; ++unit) {
    value /= kStep;
  }
  int digits = unit->second;
  while (digits > 0 && rounded(value, digits) == rounded(value, digits - 1)) --digits;
  return locale.toString(value, 'f', digits) + u' ' + QLatin1String(unit->first);
}

QString dateText(std::int64_t seconds, const QLocale& locale) {
  return locale.toString(QDateTime::fromSecsSinceEpoch(seconds), QLocale::ShortFormat);
}

QString countText(std::int64_t count, const QLocale& locale) {
  return locale.toString(static_cast<qlonglong>(count));
}

}  // namespace zelnor::ui
