#include "merge/FieldCatalogueRows.h"

namespace FieldCatalogue {

namespace {

using C = Condition;

constexpr const char* kText = "Text";
constexpr const char* kDate = "Date";
constexpr const char* kTime = "Time(h:Nn am/pm)";
constexpr const char* kHours = "Time(hrs/min)";
constexpr const char* kYesNo = "Yes/No";
constexpr const char* kDollars = "Dollars";

constexpr RowSpec kAppointment[] = {
    {"Appointment Name", "Subject", kText, "Client Appointment", C::Always, 0},
    {"Appointment Date", "DateFrom", kDate, "@today", C::Always, 0},
    {"Appointment Start Time", "TimeFrom", kTime, "9:00 AM", C::Always, 0},
    {"Appointment End Time", "TimeTo", kTime, "10:00 AM", C::Always, 0},
    {"Appointment Text", "AppointmentText", kText, "Review of the year end statements", C::Always,
     0},
    {"Custom Appt Field 1", "Custom1", kText, "Custom Appt Info 1", C::Label, 1},
    {"Custom Appt Field 2", "Custom2", kText, "Custom Appt Info 2", C::Label, 2},
    {"Custom Appt Field 3", "Custom3", kText, "Custom Appt Info 3", C::Label, 3},
    {"Custom Appt Field 4", "Custom4", kText, "Custom Appt Info 4", C::Label, 4},
    {"Custom Remmit Field 5", "Custom5", kText, "Custom Appt Info 5", C::Label, 5},
    {"Custom Appt Field 1", "Custom1", kText, "Custom Appt Info 1", C::Always, 0},
    {"Custom Appt Field 2", "Custom2", kText, "Custom Appt Info 2", C::Always, 0},
    {"Custom Appt Field 3", "Custom3", kText, "Custom Appt Info 3", C::Always, 0},
    {"Custom Appt Field 4", "Custom4", kText, "Custom Appt Info 4", C::Always, 0},
    {"Custom Remmit Field 5", "Custom5", kText, "Custom Appt Info 5", C::Always, 0},
};

constexpr RowSpec kRemittance[] = {
    {"Task Name", "scheduleName", kText, "1st Quarterly GST Payment", C::Always, 0},
    {"Task Due Date", "DueDate", kDate, "04/30/@year", C::Always, 0},
    {"Task in-House Due Date", "inHouseDueDate", kDate, "04/23/@year", C::Always, 0},
    {"Task Calendar Date", "CalendarDate", kDate, "04/15/@year", C::Always, 0},
    {"Employee Assigned", "EmployeeAssigned", kText, "Jane Doe", C::Always, 0},
    {"Task Year", "Year", kText, "@year", C::Always, 0},
    {"Amount Paid", "Amount", kText, "$1,250.00", C::Always, 0},
    {"Completed By", "PersonCompleted", kText, "John Doe", C::Always, 0},
    {"Date Completed", "DateCompleted", kDate, "01/29/@year", C::Always, 0},
    {"Custom Task Field 1", "Custom1", kText, "Custom Task Info 1", C::Label, 1},
    {"Custom Task Field 2", "Custom2", kText, "Custom Task Info 2", C::Label, 2},
    {"Custom Task Field 3", "Custom3", kText, "Custom Task Info 3", C::Label, 3},
    {"Custom Task Field 4", "Custom4", kText, "Custom Task Info 4", C::Label, 4},
    {"Custom Remmit Field 5", "Custom5", kText, "Custom Task Info 5", C::Label, 5},
    {"Custom Task Field 1", "Custom1", kText, "Custom Task Info 1", C::Always, 0},
    {"Custom Task Field 2", "Custom2", kText, "Custom Task Info 2", C::Always, 0},
    {"Custom Task Field 3", "Custom3", kText, "Custom Task Info 3", C::Always, 0},
    {"Custom Task Field 4", "Custom4", kText, "Custom Task Info 4", C::Always, 0},
    {"Custom Remmit Field 5", "Custom5", kText, "Custom Task Info 5", C::Always, 0},
};

constexpr RowSpec kTask[] = {
    {"Task Name", "Subject", kText, "Prepare the year end file", C::Always, 0},
    {"Task Due Date", "DateFrom", kDate, "@today", C::Always, 0},
    {"Task Start Time", "TimeFrom", kTime, "9:00 AM", C::Always, 0},
    {"Task End Time", "TimeTo", kTime, "11:00 AM", C::Always, 0},
    {"Task Text", "AppointmentText", kText, "Gather the bank statements", C::Always, 0},
    {"Custom Task Field 1", "Custom1", kText, "Custom Task Info 1", C::Label, 1},
    {"Custom Task Field 2", "Custom2", kText, "Custom Task Info 2", C::Label, 2},
    {"Custom Task Field 3", "Custom3", kText, "Custom Task Info 3", C::Label, 3},
    {"Custom Task Field 4", "Custom4", kText, "Custom Task Info 4", C::Label, 4},
    {"Custom Remmit Field 5", "Custom5", kText, "Custom Task Info 5", C::Label, 5},
    {"Custom Task Field 1", "Custom1", kText, "Custom Task Info 1", C::Always, 0},
    {"Custom Task Field 2", "Custom2", kText, "Custom Task Info 2", C::Always, 0},
    {"Custom Task Field 3", "Custom3", kText, "Custom Task Info 3", C::Always, 0},
    {"Custom Task Field 4", "Custom4", kText, "Custom Task Info 4", C::Always, 0},
    {"Custom Remmit Field 5", "Custom5", kText, "Custom Task Info 5", C::Always, 0},
};

constexpr RowSpec kDocket[] = {
    {"Docket Name", "Subject", kText, "Bookkeeping", C::Always, 0},
    {"Docket Date", "DateFrom", kDate, "@today", C::Always, 0},
    {"Docket Start Time", "TimeFrom", kTime, "9:00 AM", C::Always, 0},
    {"Docket End Time", "TimeTo", kTime, "9:30 AM", C::Always, 0},
    {"Docket Text", "AppointmentText", kText, "Monthly entries", C::Always, 0},
    {"Docket Locked", "DocketLocked", kYesNo, "No", C::Always, 0},
    {"Is Docket Invoiced", "Invoiced", kYesNo, "No", C::Always, 0},
    {"Show On Invoice", "ShowOnInvoice", kYesNo, "Yes", C::Always, 0},
    {"Used Docket Timer", "UsedRealTime", kYesNo, "No", C::Always, 0},
    {"Time From (Actual Time)", "RealTimeFrom", kTime, "9:02 AM", C::Always, 0},
    {"Time To (Actual Time)", "RealTimeTo", kTime, "9:29 AM", C::Always, 0},
    {"Time From (Original Time)", "OriginalRealTimeFrom", kTime, "9:00 AM", C::Always, 0},
    {"Time To (Original Time)", "OriginalRealTimeTo", kTime, "9:30 AM", C::Always, 0},
    {"Time From (Rounded Time)", "RoundedTimeFrom", kTime, "9:00 AM", C::Always, 0},
    {"Time To (Rounded Time)", "RoundedTimeTo", kTime, "9:30 AM", C::Always, 0},
    {"Docket Notes", "TextBody", kText, "Entries for the month posted", C::Always, 0},
    {"Billing Type", "DocketBillingType", kText, "Hourly", C::Always, 0},
    {"Billing Rate", "BillingJobRate", kText, "$50.00", C::Always, 0},
    {"Billable Time", "BillableTime", kYesNo, "Yes", C::Always, 0},
    {"Total Time (Actual)", "TotalTimeReal", kHours, "27 min", C::Always, 0},
    {"Total Time (Rounded)", "TotalTimeRounded", kHours, "30 min", C::Always, 0},
    {"Use Adjusted Time", "UseAdjustedTime", kYesNo, "No", C::Always, 0},
    {"Total Time (Adjusted)", "TotalTimeAdjusted", kHours, "30 min", C::Always, 0},
    {"Total Time (Final)", "TotalTimeFinal", kHours, "30 min", C::Always, 0},
    {"Total Amount (Actual)", "TotalAmountReal", kDollars, "$22.50", C::Always, 0},
    {"Total Amount (Final)", "TotalAmountFinal", kDollars, "$25.00", C::Always, 0},
    {"Internal Docket Description", "DescriptionInternal", kText, "Monthly bookkeeping", C::Always,
     0},
    {"Client Docket Description", "DescriptionClient", kText, "Bookkeeping services", C::Always, 0},
    {"Custom Docket Field 1", "Custom1", kText, "Custom Docket Info 1", C::Label, 1},
    {"Custom Docket Field 2", "Custom2", kText, "Custom Docket Info 2", C::Label, 2},
    {"Custom Docket Field 3", "Custom3", kText, "Custom Docket Info 3", C::Label, 3},
    {"Custom Docket Field 4", "Custom4", kText, "Custom Docket Info 4", C::Label, 4},
    {"Custom Remmit Field 5", "Custom5", kText, "Custom Docket Info 5", C::Label, 5},
    {"Custom Docket Field 1", "Custom1", kText, "Custom Docket Info 1", C::Always, 0},
    {"Custom Docket Field 2", "Custom2", kText, "Custom Docket Info 2", C::Always, 0},
    {"Custom Docket Field 3", "Custom3", kText, "Custom Docket Info 3", C::Always, 0},
    {"Custom Docket Field 4", "Custom4", kText, "Custom Docket Info 4", C::Always, 0},
    {"Custom Remmit Field 5", "Custom5", kText, "Custom Docket Info 5", C::Always, 0},
};

constexpr RowSpec kCompany[] = {
    {"Company Name", "CompanyName", kText, "ABC Consulting", C::Always, 0},
    {"Corporate Name", "CorporateName", kText, "ABC Consulting Inc.", C::Always, 0},
    {"Company Type", "CompanyType", kText, "Corporation", C::Always, 0},
    {"Industry Type", "IndustryType", kText, "Consulting", C::Always, 0},
    {"Address", "Address", kText, "123 Main Street", C::Always, 0},
    {"City", "City", kText, "Toronto", C::Always, 0},
    {"Province", "Province", kText, "Ontario", C::Canada, 0},
    {"Abbreviated Province", "AbbreviatedProvince", kText, "Ontario", C::Always, 0},
    {"Postal Code", "PostalCode", kText, "M1M 1M1", C::Canada, 0},
    {"State", "Province", kText, "New York", C::NotCanada, 0},
    {"Zip Code", "PostalCode", kText, "10001", C::NotCanada, 0},
    {"Country", "Country", kText, "Canada", C::Always, 0},
    {"Office Number", "OfficeNumber", kText, "(416) 555-1234", C::Always, 0},
    {"Fax Number", "FaxNumber", kText, "(416) 555-1235", C::Always, 0},
    {"Email", "Email", kText, "info@abcconsulting.com", C::Always, 0},
    {"Web Site", "WebSite", kText, "www.abcconsulting.ca", C::Canada, 0},
    {"Web Site", "WebSite", kText, "www.abcconsulting.com", C::NotCanada, 0},
    {"Supervising Partner", "PartnerName", kText, "Jane Doe", C::Always, 0},
    {"Managing Accountant", "AccountantName", kText, "John Doe", C::Always, 0},
    {"Company Custom Field 1", "Custom1", kText, "Company Custom Info 1", C::Label, 1},
    {"Company Custom Field 2", "Custom2", kText, "Company Custom Info 2", C::Label, 2},
    {"Company Custom Field 3", "Custom3", kText, "Company Custom Info 3", C::Label, 3},
    {"Company Custom Field 4", "Custom4", kText, "Company Custom Info 4", C::Label, 4},
    {"Company Custom Field 5", "Custom5", kText, "Company Custom Info 5", C::Label, 5},
    {"Company Custom Field 1", "Custom1", kText, "Company Custom Info 1", C::Always, 0},
    {"Company Custom Field 2", "Custom2", kText, "Company Custom Info 2", C::Always, 0},
    {"Company Custom Field 3", "Custom3", kText, "Company Custom Info 3", C::Always, 0},
    {"Company Custom Field 4", "Custom4", kText, "Company Custom Info 4", C::Always, 0},
    {"Company Custom Field 5", "Custom5", kText, "Company Custom Info 5", C::Always, 0},
};

constexpr RowSpec kContactName[] = {
    {"Contact Display Name", "DisplayName", kText, "John Smith", C::Always, 0},
    {"Contact & Spouse Name", "ContactAndSpouseName", kText, "John & Jane Smith", C::Always, 0},
    {"Contact Name Prefix", "NamePrefix", kText, "Mr.", C::Always, 0},
    {"Contact First Name", "FirstName", kText, "John", C::Always, 0},
    {"Contact Last Name", "LastName", kText, "Smith", C::Always, 0},
    {"Contact Name Suffix", "NameSuffix", kText, "Jr.", C::Always, 0},
};

constexpr RowSpec kAccounting[] = {
    {"Business Number", "BusinessNumber", kText, "123456789", C::Canada, 0},
    {"{G} Number", "GSTNumber", kText, "123456789RT0001", C::Canada, 0},
    {"{P} Number", "PSTNumber", kText, "1234-5678", C::Canada, 0},
    {"Payroll Number", "PayrollNumber", kText, "123456789RP0001", C::Canada, 0},
    {"Payroll Registered As", "PayrollRegisteredAs", kText, "Monthly", C::Canada, 0},
    {"Year End Date", "YearEndDate", kDate, "03/31/@year", C::Canada, 0},
    {"Federal Corp. Tax Number", "FederalCorpNumber", kText, "123456789RC0001", C::Canada, 0},
    {"{T} Corp. Tax Number", "ONCorpNumber", kText, "1234567", C::Canada, 0},
    {"Quebec ID Number", "MCBS", kText, "1234567890", C::Quebec, 0},
    {"ON Corp. MCBS Number", "MCBS", kText, "1234567890", C::Ontario, 0},
    {"Incorporation Date", "IncorporationDate", kDate, "06/01/@year", C::Canada, 0},
    {"Charitable Number", "CharitableNum", kText, "123456789RR0001", C::Canada, 0},
    {"NEQ Number", "WSIBNumber", kText, "1234567890", C::Quebec, 0},
    {"{W} Number", "WSIBNumber", kText, "1234567", C::NotQuebec, 0},
    {"{W} Firm Number", "WSIBFirmNumber", kText, "7654321", C::Ontario, 0},
    {"{W} Premium Rate", "WSIBPremiumRate", kText, "2.5%", C::Canada, 0},
    {"{W} Coverage", "Coverage", kText, "Yes", C::Canada, 0},
    {"EHT Number", "EHTNumber", kText, "1234567", C::Canada, 0},
    {"EHT Premium Rate", "EHTPremiumRate", kText, "1.95%", C::Canada, 0},
    {"Name Renewal Date", "NameRenewalDate", kDate, "09/30/@year", C::Canada, 0},
    {"Law Society Member Number", "LawSocietyMemberNumber", kText, "12345", C::Canada, 0},
    {"Federal Employer Identification Number", "EIN", kText, "12-3456789", C::NotCanada, 0},
    {"Sellers Permit Number", "SellersPermitNum", kText, "SR-123-456789", C::NotCanada, 0},
    {"Year End Date", "USYearEndDate", kDate, "12/31/@year", C::NotCanada, 0},
    {"Secretary of State File Number", "SoSFileNum", kText, "C1234567", C::NotCanada, 0},
    {"Incorporation Date", "USIncorporationDate", kDate, "06/01/@year", C::NotCanada, 0},
    {"Property Tax Number", "PropertyTaxNum", kText, "123-456-789", C::NotCanada, 0},
    {"Form 637 Registration Number", "Form637RegNum", kText, "AB-1234", C::NotCanada, 0},
    {"Terminal Control Number", "TCN", kText, "T-12-AB-1234", C::NotCanada, 0},
    {"Terminal Name", "TerminalName", kText, "Main Terminal", C::NotCanada, 0},
    {"Terminal Location", "TerminalLocation", kText, "Buffalo, NY", C::NotCanada, 0},
    {"Alcohol Number", "AlcoholNum", kText, "AL-123456", C::NotCanada, 0},
    {"Custom Field 1", "ClientCustom1", kText, "Custom Info 1", C::Label, 1},
    {"Custom Field 2", "ClientCustom2", kText, "Custom Info 2", C::Label, 2},
    {"Custom Field 3", "ClientCustom3", kText, "Custom Info 3", C::Label, 3},
    {"Custom Field 4", "ClientCustom4", kText, "Custom Info 4", C::Label, 4},
    {"Custom Field 5", "ClientCustom5", kText, "Custom Info 5", C::Label, 5},
    {"Custom Field 1", "ClientCustom1", kText, "Custom Info 1", C::Always, 0},
    {"Custom Field 2", "ClientCustom2", kText, "Custom Info 2", C::Always, 0},
    {"Custom Field 3", "ClientCustom3", kText, "Custom Info 3", C::Always, 0},
    {"Custom Field 4", "ClientCustom4", kText, "Custom Info 4", C::Always, 0},
    {"Custom Field 5", "ClientCustom5", kText, "Custom Info 5", C::Always, 0},
};

constexpr RowSpec kSoftware[] = {
    {"Software Name", "SoftwareName", kText, "Simply Ledger", C::Always, 0},
    {"Software Serial Number", "SoftwareSerialNumber", kText, "SN-12345-67890", C::Always, 0},
    {"Software Version", "SoftwareVersion", kText, "2024", C::Always, 0},
    {"Software Account Number", "SoftwareAccountNumber", kText, "AC-98765", C::Always, 0},
    {"Data File Saved As", "FileSavedAs", kText, "ABCConsulting.sai", C::Always, 0},
};

constexpr RowSpec kMoreContact[] = {
    {"Contact SIN", "SocialInsuranceNumber", kText, "123 456 789", C::Canada, 0},
    {"Contact SSN", "SocialInsuranceNumber", kText, "123-45-6789", C::NotCanada, 0},
    {"Contact Employee Type", "EmployeeType", kText, "Owner", C::Always, 0},
    {"Contact Percentage Ownership", "PercentageOwnership", kText, "50%", C::Always, 0},
    {"Contact Business Name", "BusinessName", kText, "ABC Consulting", C::Always, 0},
    {"Contact Job Title", "BusinessJobTitle", kText, "President", C::Always, 0},
    {"Contact Business Department", "BusinessDepartment", kText, "Administration", C::Always, 0},
    {"Contact Business Office", "BusinessOffice", kText, "Head Office", C::Always, 0},
    {"Contact Business Phone", "BusinessPhone_Main", kText, "(416) 555-1234", C::Always, 0},
    {"Contact Business Cell", "BusinessPhone_Cell", kText, "(416) 555-2345", C::Always, 0},
    {"Contact Business Pager", "BusinessPhone_Pager", kText, "(416) 555-3456", C::Always, 0},
    {"Contact Business Fax", "BusinessPhone_Fax", kText, "(416) 555-1235", C::Always, 0},
    {"Contact Business Address", "BusinessAddress", kText, "123 Main Street", C::Always, 0},
    {"Contact Business City", "BusinessCity", kText, "Toronto", C::Always, 0},
    {"Contact Business Province", "BusinessProvince", kText, "Ontario", C::Canada, 0},
    {"Contact Business Abbreviated Province", "BusinessAbbreviatedProvince", kText, "Ontario",
     C::Always, 0},
    {"Contact Business Postal Code", "BusinessPostalCode", kText, "M1M 1M1", C::Canada, 0},
    {"Contact Business State", "BusinessProvince", kText, "New York", C::NotCanada, 0},
    {"Contact Business Zip Code", "BusinessPostalCode", kText, "10001", C::NotCanada, 0},
    {"Contact Business Country", "BusinessCountry", kText, "Canada", C::Always, 0},
    {"Contact Business Web Site", "BusinessWebSite", kText, "www.abcconsulting.com", C::Always, 0},
    {"Contact Business Email", "BusinessEmail", kText, "john@abcconsulting.com", C::Always, 0},
    {"Contact Personal Email", "PersonalEmail", kText, "john.smith@example.com", C::Always, 0},
    {"Contact Personal Phone", "HomePhone_Main", kText, "(416) 555-4567", C::Always, 0},
    {"Contact Personal Cell", "HomePhone_Cell", kText, "(416) 555-5678", C::Always, 0},
    {"Contact Personal Pager", "HomePhone_Pager", kText, "(416) 555-6789", C::Always, 0},
    {"Contact Personal Fax", "HomePhone_Fax", kText, "(416) 555-7890", C::Always, 0},
    {"Contact Home Address", "HomeAddress", kText, "45 Elm Avenue", C::Always, 0},
    {"Contact Home City", "HomeCity", kText, "Toronto", C::Always, 0},
    {"Contact Home Province", "HomeProvince", kText, "Ontario", C::Canada, 0},
    {"Contact Home Abbreviated Province", "HomeAbbreviatedProvince", kText, "Ontario", C::Always,
     0},
    {"Contact Home Postal Code", "HomePostalCode", kText, "M2M 2M2", C::Canada, 0},
    {"Contact Home State", "HomeProvince", kText, "New York", C::NotCanada, 0},
    {"Contact Home Zip Code", "HomePostalCode", kText, "10002", C::NotCanada, 0},
    {"Contact Home Country", "HomeCountry", kText, "Canada", C::Always, 0},
    {"Contact Personal Web Site", "PersonalWebSite", kText, "www.johnsmith.com", C::Always, 0},
    {"Contact Children", "Children", kText, "Mary, Tom", C::Always, 0},
    {"Contact Gender", "Gender", kText, "Male", C::Always, 0},
    {"Contact Birthday", "Birthday", kDate, "@today", C::Always, 0},
    {"Contact Anniversary", "Anniversary", kDate, "@today", C::Always, 0},
    {"Contact Spoken Language", "Language", kText, "English", C::Always, 0},
    {"Contact Marital Status", "MaritialStatus", kText, "Married", C::Always, 0},
    {"Contact Custom Field 1", "Custom1", kText, "Contact Custom Info 1", C::Label, 1},
    {"Contact Custom Field 2", "Custom2", kText, "Contact Custom Info 2", C::Label, 2},
    {"Contact Custom Field 3", "Custom3", kText, "Contact Custom Info 3", C::Label, 3},
    {"Contact Custom Field 4", "Custom4", kText, "Contact Custom Info 4", C::Label, 4},
    {"Contact Custom Field 5", "Custom5", kText, "Contact Custom Info 5", C::Label, 5},
    {"Contact Custom Field 1", "Custom1", kText, "Contact Custom Info 1", C::Always, 0},
    {"Contact Custom Field 2", "Custom2", kText, "Contact Custom Info 2", C::Always, 0},
    {"Contact Custom Field 3", "Custom3", kText, "Contact Custom Info 3", C::Always, 0},
    {"Contact Custom Field 4", "Custom4", kText, "Contact Custom Info 4", C::Always, 0},
    {"Contact Custom Field 5", "Custom5", kText, "Contact Custom Info 5", C::Always, 0},
    {"Spouse Name Prefix", "SpouseNamePrefix", kText, "Mrs.", C::Always, 0},
    {"Spouse First Name", "SpouseFirstName", kText, "Jane", C::Always, 0},
    {"Spouse Middle Name", "SpouseMiddleName", kText, "Anne", C::Always, 0},
    {"Spouse Last Name", "SpouseLastName", kText, "Smith", C::Always, 0},
    {"Spouse Name Suffix", "SpouseNameSuffix", kText, "", C::Always, 0},
    {"Spouse Display Name", "SpouseName", kText, "Jane Smith", C::Always, 0},
    {"Spouse Personal Email", "SpouseEmail", kText, "jane.smith@example.com", C::Always, 0},
    {"Spouse Home Phone", "SpousePhone_Main", kText, "(416) 555-4567", C::Always, 0},
    {"Spouse Personal Cell", "SpousePhone_Cell", kText, "(416) 555-8901", C::Always, 0},
    {"Spouse Home Address", "SpouseAddress", kText, "45 Elm Avenue", C::Always, 0},
    {"Spouse Home City", "SpouseCity", kText, "Toronto", C::Always, 0},
    {"Spouse Home Province", "SpouseProvince", kText, "Ontario", C::Canada, 0},
    {"Spouse Home Abbreviated Province", "SpouseAbbreviatedProvince", kText, "Ontario", C::Always,
     0},
    {"Spouse Home Postal Code", "SpousePostalCode", kText, "M2M 2M2", C::Canada, 0},
    {"Spouse Home State", "SpouseProvince", kText, "New York", C::NotCanada, 0},
    {"Spouse Home Zip Code", "SpousePostalCode", kText, "10002", C::NotCanada, 0},
    {"Spouse Home Country", "SpouseCountry", kText, "Canada", C::Always, 0},
    {"Spouse Gender", "SpouseGender", kText, "Female", C::Always, 0},
    {"Spouse Birthday", "SpouseBirthday", kText, "@today", C::Always, 0},
    {"Spouse SIN", "SpouseSIN", kText, "987 654 321", C::Canada, 0},
    {"Spouse SSN", "SpouseSIN", kText, "987-65-4321", C::NotCanada, 0},
};

constexpr RowSpec kAccountant[] = {
    {"Your Company Name", "CompanyName", kText, "Smith & Associates", C::Always, 0},
    {"Your Corporate Name", "CorporateName", kText, "Smith & Associates LLP", C::Always, 0},
    {"Your Company Type", "CompanyType", kText, "Partnership", C::Always, 0},
    {"Your Industry Type", "IndustryType", kText, "Accounting", C::Always, 0},
    {"Your Address", "Address", kText, "500 King Street", C::Always, 0},
    {"Your City", "City", kText, "Toronto", C::Always, 0},
    {"Your Province", "Province", kText, "Ontario", C::Canada, 0},
    {"Your Postal Code", "PostalCode", kText, "M5V 1A1", C::Canada, 0},
    {"Your State", "Province", kText, "New York", C::NotCanada, 0},
    {"Your Zip Code", "PostalCode", kText, "10001", C::NotCanada, 0},
    {"Your Country", "Country", kText, "Canada", C::Always, 0},
    {"Your Office Number", "OfficeNumber", kText, "(416) 555-9000", C::Always, 0},
    {"Your Fax Number", "FaxNumber", kText, "(416) 555-9001", C::Always, 0},
    {"Your Email", "Email", kText, "office@smithassociates.com", C::Always, 0},
    {"Your Web Site", "WebSite", kText, "www.smithassociates.com", C::Always, 0},
    {"Your Company Custom Field 1", "Custom1", kText, "Your Custom Info 1", C::Label, 1},
    {"Your Company Custom Field 2", "Custom2", kText, "Your Custom Info 2", C::Label, 2},
    {"Your Company Custom Field 3", "Custom3", kText, "Your Custom Info 3", C::Label, 3},
    {"Your Company Custom Field 4", "Custom4", kText, "Your Custom Info 4", C::Label, 4},
    {"Your Company Custom Field 5", "Custom5", kText, "Your Custom Info 5", C::Label, 5},
    {"Your Company Custom Field 1", "Custom1", kText, "Your Custom Info 1", C::Always, 0},
    {"Your Company Custom Field 2", "Custom2", kText, "Your Custom Info 2", C::Always, 0},
    {"Your Company Custom Field 3", "Custom3", kText, "Your Custom Info 3", C::Always, 0},
    {"Your Company Custom Field 4", "Custom4", kText, "Your Custom Info 4", C::Always, 0},
    {"Your Company Custom Field 5", "Custom5", kText, "Your Custom Info 5", C::Always, 0},
};

} // namespace

std::span<const RowSpec> appointmentRows() {
    return kAppointment;
}
std::span<const RowSpec> remittanceRows() {
    return kRemittance;
}
std::span<const RowSpec> taskRows() {
    return kTask;
}
std::span<const RowSpec> docketRows() {
    return kDocket;
}
std::span<const RowSpec> companyRows() {
    return kCompany;
}
std::span<const RowSpec> contactNameRows() {
    return kContactName;
}
std::span<const RowSpec> accountingRows() {
    return kAccounting;
}
std::span<const RowSpec> softwareRows() {
    return kSoftware;
}
std::span<const RowSpec> moreContactRows() {
    return kMoreContact;
}
std::span<const RowSpec> accountantRows() {
    return kAccountant;
}

} // namespace FieldCatalogue
