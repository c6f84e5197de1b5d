#pragma once

// The note box of the entry editor and of the timer window: plain text with
// the edit commands and the zoom steps of the device's ink note.

#include <QWidget>
#include <cstdint>
#include <vector>

class QAction;
class QPlainTextEdit;

namespace qb {

class NoteEditor : public QWidget {
    Q_OBJECT
  public:
    explicit NoteEditor(QWidget* parent = nullptr);

    // The note as the entry stores it (UTF-16LE text, empty for none).
    std::vector<std::uint8_t> noteBytes() const;
    void setNoteBytes(const std::vector<std::uint8_t>& bytes);
    void clear();

    // 75, 100, 150 or 200.
    int zoomPercent() const { return zoom_; }
    void setZoomPercent(int percent);
    QPlainTextEdit* textBox() const { return text_; }
    // The command of that menu text ("Undo", ..., "200%", "Wrap To Window").
    QAction* command(const QString& text) const;

  private:
    QPlainTextEdit* text_;
    QList<QAction*> commands_;
    qreal basePointSize_;
    int zoom_ = 100;
};

}  // namespace qb
