// RuleField: the text of a rule in several lines, with one place marked. Tab and Enter belong to the dialog around it:
// a rule has no use for them.
#pragma once

#include <QtWidgets/QPlainTextEdit>

#include <functional>

namespace brindle::map {

class RuleField final : public QPlainTextEdit {
  public:
    // Longer texts are neither shown whole nor pasted: laying them out would take the window's time.
    static constexpr int kMostCharacters = 65'536;

    RuleField();

    // Shows the text; only its beginning, which cannot be changed then, when it is too long.
    void Show(const QString& text);
    // What stands in it; line breaks are LF.
    QString Shown() const;
    // Called when a text was too long to be pasted.
    std::function<void()> refused;
    // Marks the character (the one before it at the end of the text); -1: none.
    void Mark(int place);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;
};

}  // namespace brindle::map
