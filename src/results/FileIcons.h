#pragma once

#include <QImage>
#include <QObject>

#include "store/FileRecord.h"

namespace zelnor {

/// Icons for the rows of a list. Main thread only; never waits.
class FileIcons : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// The picture of this entry, at most `pixels` wide and high (device pixels); null if it is not
  /// known (yet). Asking makes it become known.
  virtual QImage icon(const FileRecord& record, int pixels) = 0;

 Q_SIGNALS:
  /// More is known than before: what is visible should be asked for again. Comes at most once in a
  /// turn of the event loop.
  void arrived();
};

}  // namespace zelnor
