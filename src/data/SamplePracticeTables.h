#pragma once

// The names, places and task types the sample practice draws from. Order
// matters: the generator picks by index from a seeded sequence, so any change
// here changes every database generated for a given seed.
namespace SamplePracticeTables {

inline const char* const FirstNames[] = {
    "Ann",    "Bob",    "Chloé",  "David",    "Émile", "Fatima",   "George",  "Hannah",
    "Ian",    "José",   "Karen",  "Liam",     "Maria", "Noah",     "Olivia",  "Priya",
    "Quinn",  "Rachel", "Samuel", "Teresa",   "Umar",  "Victoria", "William", "Xiao",
    "Yvonne", "Zoë",    "Amélie", "François", "Grace", "Hélène"};
inline const char* const LastNames[] = {
    "Smith",  "O'Brien",  "Tremblay", "Côté",   "Nguyen", "MacDonald", "Patel",
    "Gagnon", "D'Angelo", "Lee",      "Wilson", "Roy",    "Müller",    "Chen",
    "Martin", "Bouchard", "O'Neil",   "Brown",  "Singh",  "Lavoie",    "Kowalski",
    "Fortin", "Anderson", "Ouellet",  "Hughes", "Dubé",   "Campbell",  "Morrison"};
inline const char* const Trades[] = {
    "Bakery",      "Construction",  "Dental Clinic",    "Landscaping", "Consulting",
    "Auto Repair", "Café",          "Plumbing",         "Florist",     "Hardware",
    "Pharmacy",    "Design Studio", "Electrical",       "Trucking",    "Catering",
    "Roofing",     "Bookkeeping",   "Veterinary Clinic"};
inline const char* const Suffixes[] = {"Inc.",  "Ltd.",        "& Sons", "Co.",
                                       "Corp.", "Enterprises", "Group",  ""};
inline const char* const Places[] = {"Lakeshore", "Maple",   "North Bay", "Riverside",
                                     "Élan",      "Harbour", "Summit",    "Pine Ridge"};

struct City {
    const char* city;
    const char* province;
    const char* postal;
    const char* area;
};
inline const City Cities[] = {{"Toronto", "Ontario", "M5V 2T6", "416"},
                              {"Ottawa", "Ontario", "K1P 5G4", "613"},
                              {"Mississauga", "Ontario", "L5B 3C2", "905"},
                              {"Guelph", "Ontario", "N1H 3T9", "519"},
                              {"Montréal", "Quebec", "H2X 1Y4", "514"},
                              {"Québec", "Quebec", "G1R 4P5", "418"},
                              {"Halifax", "Nova Scotia", "B3J 3K5", "902"},
                              {"Moncton", "New Brunswick", "E1C 4M3", "506"},
                              {"Calgary", "Alberta", "T2P 1J9", "403"},
                              {"Vancouver", "British Columbia", "V6B 1A1", "604"}};

inline const char* const Relationships[] = {"Spouse", "Son", "Daughter", "Not Specified"};

struct TaskType {
    int total;
    int sub;
    const char* name;
};
inline const TaskType TaskTypes[] = {{101, 1, "1st Quarterly GST Payment"},
                                     {101, 4, "Annual GST Return"},
                                     {102, 1, "PST Return"},
                                     {103, 1, "Payroll Remittance"},
                                     {104, 1, "Year End Financial Statements"},
                                     {105, 1, "T2 Corporate Tax Return"},
                                     {106, 1, "WSIB Annual Reconciliation"},
                                     {107, 1, "EHT Annual Return"},
                                     {108, 1, "Annual Corporate Filing"},
                                     {109, 1, "Bank Reconciliation"},
                                     {110, 1, "Employee Payroll"},
                                     {111, 1, "Monthly Bookkeeping"},
                                     {111, 5, "Inventory Count"}};

} // namespace SamplePracticeTables
