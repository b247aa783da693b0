#pragma once

#include "compositions/evaluator/PatchDefinition.h"

namespace tarnwell::compositions {

/// Puts arguments into a text with places "%@", or takes them out of one that looks like it.
class FormatText : public Patch
{
public:
    explicit FormatText(const NodeDescription &description);

    void run(Context &context) override;

    static void addPorts(const NodeDescription &description, PortList &ports);

private:
    void print(Context &context) const;
    void scan(Context &context) const;

    bool m_scans;
    QStringList m_literals; ///< the texts before, between and after the places
};

} // namespace tarnwell::compositions
