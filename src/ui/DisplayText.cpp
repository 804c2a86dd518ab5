#include "ui/DisplayText.h"

#include <algorithm>
#include <array>
#include <cmath>

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

/// The larger the unit, the more digits are worth telling.
QString sizeText(std::int64_t bytes, const QLocale& locale) {
  constexpr double kStep = 1000;
  constexpr std::array<const char16_t*, 6> kUnits{u"KB", u"MB", u"GB", u"TB", u"PB", u"EB"};
  constexpr std::array<int, 6> kDigits{0, 1, 2, 2, 2, 2};
  if (bytes < static_cast<std::int64_t>(kStep)) return locale.formattedDataSize(bytes);
  std::size_t unit = 0;
  auto value = static_cast<double>(bytes) / kStep;
  const auto rounded = [&] {
    const double scale = std::pow(10, kDigits[unit]);
    return std::round(value * scale) / scale;
  };
  for (; rounded() >= kStep && unit + 1 < kUnits.size(); ++unit) value /= kStep;
  return QStringLiteral("%1 %2").arg(
      locale.toString(rounded(), 'f', QLocale::FloatingPointShortest), QStringView(kUnits[unit]));
}

QString dateText(std::int64_t seconds, const QLocale& locale) {
  return locale.toString(QDateTime::fromSecsSinceEpoch(seconds), QLocale::ShortFormat);
}

QString countText(std::int64_t count, const QLocale& locale) {
  return locale.toString(static_cast<qlonglong>(count));
}

}  // namespace zelnor::ui
