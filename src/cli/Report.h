#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace zrk {

struct CliOptions;

/// The file of --report: one line of JSON for each board, written at its end. Other threads and processes may
/// append to the same file. All functions are for any thread.
class Report {
  public:
    /// Without --report, and in a dry run, it writes nothing.
    explicit Report(const CliOptions& options);

    /// Says why the file cannot be the report of a run that reads these inputs, without making it; "" if it
    /// can, or if none is wanted.
    [[nodiscard]] static QString problem(const CliOptions& options, const QStringList& inputs);

    [[nodiscard]] bool isWanted() const { return !m_path.isEmpty(); }

    /// Makes the file. Throws UsageError when it cannot be written.
    void begin() const;

    /// Appends the record and the tags, as a whole or not at all. Returns "", or a sentence that says why the
    /// record is missing. Blocks for ten seconds at most.
    [[nodiscard]] QString append(QJsonObject record) const;

  private:
    QString m_path; ///< "" without one
    QJsonObject m_tags;
};

} // namespace zrk
