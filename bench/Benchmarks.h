#pragma once

#include "Report.h"

#include <string>
#include <vector>

namespace Bench {

/// How thoroughly to measure.
struct Effort {
    int rounds = 5;
    bool is_quick = false; ///< Skips the slowest measurements.
};

// Each measures one topic and adds its figures. Throws if anything fails.

/// A file of 256 MiB down and up: through the module's cache callback, and through the host's files cache as well.
void MeasureTransfers(Report& io_report, const Effort& i_effort);
/// Folders of 10 to 100,000 entries.
void MeasureListings(Report& io_report, const Effort& i_effort);
/// Peak memory of a listing, in a separate process.
void MeasureListingMemory(Report& io_report, const Effort& i_effort);
/// From the arrival of a folder of 10 to 100,000 entries to the list that shows it, in the module's own dialog.
void MeasureDialog(Report& io_report, const Effort& i_effort);
/// From loading the module to the end of `Init`, in separate processes.
void MeasureLoading(Report& io_report, const Effort& i_effort);
/// From the close of the last of several dialogs whose requests hang to the end of `Unload`, in separate processes.
void MeasureUnloading(Report& io_report, const Effort& i_effort);
/// Calls of a traced function, with the log off and on.
void MeasureTracing(Report& io_report, const Effort& i_effort);

// The jobs of child processes (see ChildProcess.h): they return numbers to the parent.

std::vector<double> ListInChild(const std::wstring& i_folder);
std::vector<double> LoadInChild();
std::vector<double> UnloadInChild();

} // namespace Bench
