#pragma once

#include <QDate>
#include <QString>

// A realistic, deterministic practice for demonstrations, tests and
// benchmarks: the firm and its staff, the system and tax-year categories,
// business clients with every satellite row, associate companies, contacts
// with default contacts, families and couples, personal-tax clients, custom
// labels, scheduled tasks, calendar tasks, appointments and dockets.
// The same seed, client count and reference date give the same file.
struct SamplePracticeOptions {
    int clients = 60;
    quint32 seed = 1;
    // Dates of the practice are spread around this day (normally today).
    QDate referenceDate;
};

struct SamplePracticeSummary {
    int companies = 0;
    int clients = 0;
    int contacts = 0;
    int personalTaxClients = 0;
    int scheduleRows = 0;
};

class SamplePractice {
public:
    // Writes a new database at the location, a path or a server URI (see
    // DatabaseLocation). Refuses an existing file or a server database that
    // already has client tables; a failure leaves nothing behind (see
    // NewClientDatabase). Throws QmError on failure.
    static SamplePracticeSummary write(const QString& location,
                                       const SamplePracticeOptions& options);
};
