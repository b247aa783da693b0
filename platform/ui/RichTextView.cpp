#include "ui/RichTextView.h"

#include "ui/RichTextDocument.h"

#include <QScrollBar>
#include <QTextCursor>
#include <QTextEdit>

namespace tarnwell::ui {

bool showRichTextPackage(const QString &folder, QTextEdit &view)
{
    if (!loadRichTextPackage(folder, {view.font(), view.palette()}, *view.document()))
        return false;
    // Filling the document pushed the cursor to its end, and the view would follow it there.
    view.moveCursor(QTextCursor::Start);
    view.verticalScrollBar()->setValue(0);
    return true;
}

} // namespace tarnwell::ui
