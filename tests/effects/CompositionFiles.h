#pragma once

#include "foundation/plist/PropertyList.h"

#include <QString>

namespace tarnwell::tests {

/// The bytes of a composition that fills its view with a colour.
inline QByteArray compositionFile(const plist::Dictionary &attributes = {},
                                  const QStringList &inputs = {}, double red = 1.0)
{
    using plist::Dictionary;
    const auto text = [](const char *latin) { return QString::fromLatin1(latin); };
    const Dictionary color{
        {text("red"), red}, {text("green"), 0.0}, {text("blue"), 0.0}, {text("alpha"), 1.0}};
    plist::Array nodes{Dictionary{
        {text("class"), text("QCClear")},
        {text("key"), text("Clear")},
        {text("state"),
         Dictionary{{text("ivarInputPortStates"),
                     Dictionary{{text("inputColor"), Dictionary{{text("value"), color}}}}}}}}};
    plist::Array published;
    for (const QString &input : inputs) {
        nodes.append(
            Dictionary{{text("class"), text("QCSplitter")},
                       {text("key"), input},
                       {text("state"), Dictionary{{text("portClass"), text("QCVirtualPort")}}}});
        published.append(
            Dictionary{{text("key"), input}, {text("node"), input}, {text("port"), text("input")}});
    }
    Dictionary file = attributes;
    file.insert(text("rootPatch"),
                Dictionary{{text("class"), text("QCPatch")},
                           {text("state"),
                            Dictionary{{text("nodes"), plist::Value(nodes)},
                                       {text("publishedInputPorts"), plist::Value(published)}}}});
    return plist::write(plist::Value(file), plist::Format::Xml);
}

} // namespace tarnwell::tests
