#pragma once

#include "desktop/GenericIcons.h"

#include <QHash>
#include <QIconEngine>
#include <QPixmap>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace tarnwell::desktop {

/// Where the picture of an icon comes from: the first image file that can be read, else the first
/// name that the icon theme knows, else a drawing, or nothing at all where there is to be none.
struct IconSource
{
    QStringList imageFiles;
    QStringList themeNames;
    std::optional<GenericIcon> fallback = GenericIcon::Document;
};

/// An icon that costs nothing until it is painted: only then its source is looked for and the
/// picture loaded, in the pixels that the screen wants.
class FileIconEngine final : public QIconEngine
{
public:
    using FindSource = std::function<IconSource()>;

    explicit FileIconEngine(FindSource findSource)
        : m_findSource(std::move(findSource))
    {}

    void paint(QPainter *painter, const QRect &rectangle, QIcon::Mode mode,
               QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override;
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    bool isNull() override { return false; }
    QIconEngine *clone() const override { return new FileIconEngine(*this); }
    QString key() const override { return QStringLiteral("TarnwellFileIconEngine"); }

private:
    QPixmap load(const QSize &size);

    FindSource m_findSource;
    std::optional<IconSource> m_source;
    QHash<QSize, QPixmap> m_pixmaps; ///< in the normal mode, by device pixels
};

} // namespace tarnwell::desktop
