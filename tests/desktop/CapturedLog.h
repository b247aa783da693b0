#pragma once

#include <QLoggingCategory>
#include <QStringList>

namespace tarnwell::tests {

/// Collects what is logged while it lives, instead of printing it. One at a time.
class CapturedLog
{
public:
    enum Details { WithoutDetails, WithDetails };

    explicit CapturedLog(Details details = WithoutDetails)
    {
        s_lines.clear();
        if (details == WithDetails)
            QLoggingCategory::setFilterRules(QStringLiteral("tarnwell.*.debug=true"));
        m_previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &,
                                               const QString &text) { s_lines.append(text); });
    }
    ~CapturedLog()
    {
        qInstallMessageHandler(m_previous);
        QLoggingCategory::setFilterRules({});
    }
    Q_DISABLE_COPY_MOVE(CapturedLog)

    QStringList containing(const QString &part) const { return s_lines.filter(part); }
    const QStringList &lines() const { return s_lines; }

private:
    static inline QStringList s_lines;
    QtMessageHandler m_previous = nullptr;
};

} // namespace tarnwell::tests
