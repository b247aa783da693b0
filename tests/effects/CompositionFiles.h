#pragma once

#include "foundation/plist/PropertyList.h"

#include <QString>

namespace tarnwell::tests {

/// The bytes of a composition that fills its view with a colour. A script, if there is one, gives
/// the colour.
inline QByteArray compositionFile(const plist::Dictionary &attributes = {},
                                  const QStringList &inputs = {}, double red = 1.0,
                                  const QString &script = {})
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
    Dictionary connections;
    if (!script.isEmpty()) {
        nodes.append(Dictionary{{text("class"), text("QCJavaScript")},
                                {text("key"), text("Script")},
                                {text("state"), Dictionary{{text("script"), script}}}});
        connections.insert(text("c"), Dictionary{{text("sourceNode"), text("Script")},
                                                 {text("sourcePort"), text("color")},
                                                 {text("destinationNode"), text("Clear")},
                                                 {text("destinationPort"), text("inputColor")}});
    }
    Dictionary file = attributes;
    file.insert(text("rootPatch"),
                Dictionary{{text("class"), text("QCPatch")},
                           {text("state"),
                            Dictionary{{text("nodes"), plist::Value(nodes)},
                                       {text("connections"), plist::Value(connections)},
                                       {text("publishedInputPorts"), plist::Value(published)}}}});
    return plist::write(plist::Value(file), plist::Format::Xml);
}

} // namespace tarnwell::tests
