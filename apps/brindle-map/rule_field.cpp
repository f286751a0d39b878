// Tests: rule_editor_dialog_test.cpp.
#include "apps/brindle-map/rule_field.h"

#include <QtCore/QMimeData>
#include <QtCore/QSignalBlocker>
#include <QtGui/QKeyEvent>
#include <QtGui/QTextBlock>

#include <algorithm>

namespace brindle::map {

RuleField::RuleField() {
    setTabChangesFocus(true);
    setLayoutDirection(Qt::LeftToRight);  // formulas read so everywhere
    setUndoRedoEnabled(true);
}

void RuleField::Show(const QString& text) {
    const QSignalBlocker quiet(this);  // nobody typed it
    setPlainText(text.left(kMostCharacters));
    setReadOnly(text.size() > kMostCharacters);
    moveCursor(QTextCursor::End);
}

// Not the plain text, in which blanks that do not break are others.
QString RuleField::Shown() const {
    QString text = document()->toRawText();
    return text.replace(QChar::ParagraphSeparator, u'\n');
}

void RuleField::Mark(int place) {
    QList<QTextEdit::ExtraSelection> marks;
    const int length = document()->characterCount() - 1;
    if (place >= 0 && length > 0) {
        QTextEdit::ExtraSelection mark;
        mark.cursor = QTextCursor(document());
        mark.cursor.setPosition(std::min(place, length - 1));
        mark.cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
        mark.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        mark.format.setUnderlineColor(Qt::red);
        mark.format.setBackground(QColor(255, 160, 160));
        mark.format.setForeground(Qt::black);
        marks.push_back(mark);
    }
    setExtraSelections(marks);
}

void RuleField::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    enter ? event->ignore() : QPlainTextEdit::keyPressEvent(event);
}

bool RuleField::canInsertFromMimeData(const QMimeData* source) const {
    return source->hasText();
}

void RuleField::insertFromMimeData(const QMimeData* source) {
    if (document()->characterCount() + source->text().size() <= kMostCharacters)
        QPlainTextEdit::insertFromMimeData(source);
    else if (refused)
        refused();
}

}  // namespace brindle::map
