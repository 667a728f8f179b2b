#pragma once

#include "export/export_format.h"

namespace sorvanta {

/// What the entries of an export menu do. Main thread only.
class ExportActions {
public:
    ExportActions() = default;
    ExportActions(const ExportActions &) = delete;
    ExportActions &operator=(const ExportActions &) = delete;
    virtual ~ExportActions() = default;

    /// Asks for a place and saves there.
    virtual void save(ExportFormat format) = 0;
    /// Saves into the Downloads folder.
    virtual void download(ExportFormat format) = 0;
};

} // namespace sorvanta
