#pragma once

#include <QString>

namespace sorvanta {

/// The paragraph of the Help section that says where to write to.
QString supportText(const QString &supportAddress);

/// The paragraph that says what to write about a model.
QString modelIssueText();

} // namespace sorvanta
