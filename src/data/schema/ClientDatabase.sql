-- The client database as this program reads it. The host program creates
-- and owns the file; this text is used for new files (the sample practice,
-- tests) and as the reference of the columns the program relies on.
--
-- Storage conventions:
--   /*yes-no*/ columns: INTEGER, 0 false, any other value true (1 is written)
--   /*date*/ columns:   TEXT 'YYYY-MM-DD' or 'YYYY-MM-DD HH:MM:SS'; a time of day
--                       alone as '1899-12-30 HH:MM:SS' ('HH:MM:SS' is also read)
--   money: REAL; IDs: INTEGER

-- The category tree. CategoryNum is the parent, Null at the top.
CREATE TABLE Categories (
  CategoryID INTEGER PRIMARY KEY,
  CategoryNum INTEGER,
  CategoryName TEXT,
  CategoryDescription TEXT,
  CategorySpecialCode TEXT
);

-- One row a company; CompanyNum is the host company of an associate.
CREATE TABLE Companies (
  CompanyID INTEGER PRIMARY KEY,
  CategoryNum INTEGER,
  CompanyNum INTEGER,
  CompanyName TEXT,
  CorporateName TEXT,
  CompanyType TEXT,
  IndustryType TEXT,
  Address TEXT,
  City TEXT,
  Province TEXT,
  PostalCode TEXT,
  Country TEXT,
  OfficeNumber TEXT,
  FaxNumber TEXT,
  Email TEXT,
  WebSite TEXT,
  PartnerName TEXT,
  AccountantName TEXT,
  EmployeeAssigned TEXT,
  Custom1 TEXT,
  Custom2 TEXT,
  Custom3 TEXT,
  Custom4 TEXT,
  Custom5 TEXT,
  DefaultContactName TEXT,
  DefaultContactPhoneNumber TEXT,
  DefaultContactFaxNumber TEXT,
  DefaultContactEmail TEXT
);

-- A company is a client when a row here points to it. ActiveStatus 1 active, 2 inactive.
CREATE TABLE ClientData (
  ClientDataID INTEGER PRIMARY KEY,
  CompanyIDNum INTEGER,
  ActiveStatus INTEGER,
  ShowThisClient INTEGER NOT NULL DEFAULT 0 /*yes-no*/
);

-- Satellites of ClientData, keyed by the ClientDataID.
CREATE TABLE AccountingServices (
  AccountingServiceID INTEGER PRIMARY KEY,
  BusinessNumber TEXT,
  PayrollNumber TEXT,
  PayrollRegisteredAs TEXT,
  YearEndDate TEXT /*date*/,
  GSTNumber TEXT,
  PSTNumber TEXT
);

CREATE TABLE ClientOptions (
  ClientOptionID INTEGER PRIMARY KEY,
  ClientCustom1 TEXT,
  ClientCustom2 TEXT,
  ClientCustom3 TEXT,
  ClientCustom4 TEXT,
  ClientCustom5 TEXT
);

CREATE TABLE CorpTaxInfo (
  CorpTaxInfoID INTEGER PRIMARY KEY,
  FederalCorpNumber TEXT,
  ONCorpNumber TEXT,
  MCBS TEXT,
  IncorporationDate TEXT /*date*/,
  CharitableNum TEXT
);

CREATE TABLE LawInfo (
  LawInfoID INTEGER PRIMARY KEY,
  NameRenewalDate TEXT /*date*/,
  LawSocietyMemberNumber TEXT
);

CREATE TABLE OtherInfo (
  OtherInfoID INTEGER PRIMARY KEY,
  PropertyTaxNum TEXT,
  Form637RegNum TEXT,
  TCN TEXT,
  TerminalName TEXT,
  TerminalLocation TEXT,
  AlcoholNum TEXT
);

CREATE TABLE SoftwareInfo (
  SoftwareInfoID INTEGER PRIMARY KEY,
  SoftwareName TEXT,
  SoftwareSerialNumber TEXT,
  SoftwareVersion TEXT,
  SoftwareAccountNumber TEXT,
  FileSavedAs TEXT
);

CREATE TABLE WSIB_EHTInfo (
  WSIB_EHTInfoID INTEGER PRIMARY KEY,
  WSIBNumber TEXT,
  WSIBFirmNumber TEXT,
  WSIBPremiumRate TEXT,
  Coverage TEXT,
  EHTNumber TEXT,
  EHTPremiumRate TEXT
);

CREATE TABLE ClientUSInfo (
  ClientUSInfoID INTEGER PRIMARY KEY,
  EIN TEXT,
  SellersPermitNum TEXT,
  USYearEndDate TEXT /*date*/,
  SoSFileNum TEXT,
  USIncorporationDate TEXT /*date*/
);

-- Keyed by the CompanyID. ContactNotes holds the default contact card (rich text).
CREATE TABLE CompaniesNotes (
  CompanyNum INTEGER PRIMARY KEY,
  BusinessNotes TEXT,
  ContactNotes TEXT,
  Notes TEXT
);

-- One row a person.
CREATE TABLE Contacts (
  ContactID INTEGER PRIMARY KEY,
  DisplayName TEXT,
  NamePrefix TEXT,
  FirstName TEXT,
  LastName TEXT,
  NameSuffix TEXT,
  SocialInsuranceNumber TEXT,
  EmployeeType TEXT,
  PercentageOwnership TEXT,
  BusinessName TEXT,
  BusinessJobTitle TEXT,
  BusinessDepartment TEXT,
  BusinessOffice TEXT,
  BusinessPhone_Main TEXT,
  BusinessPhone_Cell TEXT,
  BusinessPhone_Pager TEXT,
  BusinessPhone_Fax TEXT,
  BusinessAddress TEXT,
  BusinessCity TEXT,
  BusinessProvince TEXT,
  BusinessPostalCode TEXT,
  BusinessCountry TEXT,
  BusinessWebSite TEXT,
  BusinessEmail TEXT,
  PersonalEmail TEXT,
  HomePhone_Main TEXT,
  HomePhone_Cell TEXT,
  HomePhone_Pager TEXT,
  HomePhone_Fax TEXT,
  HomeAddress TEXT,
  HomeCity TEXT,
  HomeProvince TEXT,
  HomePostalCode TEXT,
  HomeCountry TEXT,
  PersonalWebSite TEXT,
  Children TEXT,
  Gender TEXT,
  Birthday TEXT /*date*/,
  Anniversary TEXT /*date*/,
  Language TEXT,
  MaritialStatus TEXT,
  Custom1 TEXT,
  Custom2 TEXT,
  Custom3 TEXT,
  Custom4 TEXT,
  Custom5 TEXT,
  SpouseNamePrefix TEXT,
  SpouseFirstName TEXT,
  SpouseMiddleName TEXT,
  SpouseLastName TEXT,
  SpouseNameSuffix TEXT,
  SpouseName TEXT,
  SpouseEmail TEXT,
  SpousePhone_Main TEXT,
  SpousePhone_Cell TEXT,
  SpouseAddress TEXT,
  SpouseCity TEXT,
  SpouseProvince TEXT,
  SpousePostalCode TEXT,
  SpouseCountry TEXT,
  SpouseGender TEXT,
  SpouseBirthday TEXT,
  SpouseSIN TEXT,
  ContactPersonalTaxDisplayType INTEGER,
  InheritCompanyInfo INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  IsSpouseAlsoPersonalTaxClient INTEGER NOT NULL DEFAULT 0 /*yes-no*/
);

-- Keyed by the ContactID.
CREATE TABLE ContactsNotes (
  ContactNum INTEGER PRIMARY KEY,
  Notes TEXT,
  BusinessNotes TEXT,
  PersonalNotes TEXT
);

-- Ties a person to a company, a category or another person. No key of its own.
CREATE TABLE ContactLinks (
  ContactIDNum INTEGER,
  CompanyNum INTEGER,
  CategoryNum INTEGER,
  ContactNum INTEGER,
  IsPersonalTaxCategory INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  FamilyRelationship TEXT,
  DefaultContact INTEGER NOT NULL DEFAULT 0 /*yes-no*/
);

-- The practice itself, one row.
CREATE TABLE AccountantFirmInfo (
  CompanyID INTEGER PRIMARY KEY,
  CompanyName TEXT,
  CorporateName TEXT,
  CompanyType TEXT,
  IndustryType TEXT,
  Address TEXT,
  City TEXT,
  Province TEXT,
  PostalCode TEXT,
  Country TEXT,
  OfficeNumber TEXT,
  FaxNumber TEXT,
  Email TEXT,
  WebSite TEXT,
  Custom1 TEXT,
  Custom2 TEXT,
  Custom3 TEXT,
  Custom4 TEXT,
  Custom5 TEXT
);

-- Staff and users; ContactID shares the number space of Contacts.ContactID.
CREATE TABLE AccountantEmployeeInfo (
  ContactID INTEGER PRIMARY KEY,
  DisplayName TEXT,
  NamePrefix TEXT,
  FirstName TEXT,
  LastName TEXT,
  NameSuffix TEXT,
  SocialInsuranceNumber TEXT,
  EmployeeType TEXT,
  PercentageOwnership TEXT,
  BusinessName TEXT,
  BusinessJobTitle TEXT,
  BusinessDepartment TEXT,
  BusinessOffice TEXT,
  BusinessPhone_Main TEXT,
  BusinessPhone_Cell TEXT,
  BusinessPhone_Pager TEXT,
  BusinessPhone_Fax TEXT,
  BusinessAddress TEXT,
  BusinessCity TEXT,
  BusinessProvince TEXT,
  BusinessPostalCode TEXT,
  BusinessCountry TEXT,
  BusinessWebSite TEXT,
  BusinessEmail TEXT,
  PersonalEmail TEXT,
  HomePhone_Main TEXT,
  HomePhone_Cell TEXT,
  HomePhone_Pager TEXT,
  HomePhone_Fax TEXT,
  HomeAddress TEXT,
  HomeCity TEXT,
  HomeProvince TEXT,
  HomePostalCode TEXT,
  HomeCountry TEXT,
  PersonalWebSite TEXT,
  Children TEXT,
  Gender TEXT,
  Birthday TEXT /*date*/,
  Anniversary TEXT /*date*/,
  Language TEXT,
  MaritialStatus TEXT,
  Custom1 TEXT,
  Custom2 TEXT,
  Custom3 TEXT,
  Custom4 TEXT,
  Custom5 TEXT,
  SpouseNamePrefix TEXT,
  SpouseFirstName TEXT,
  SpouseMiddleName TEXT,
  SpouseLastName TEXT,
  SpouseNameSuffix TEXT,
  SpouseName TEXT,
  SpouseEmail TEXT,
  SpousePhone_Main TEXT,
  SpousePhone_Cell TEXT,
  SpouseAddress TEXT,
  SpouseCity TEXT,
  SpouseProvince TEXT,
  SpousePostalCode TEXT,
  SpouseCountry TEXT,
  SpouseGender TEXT,
  SpouseBirthday TEXT,
  SpouseSIN TEXT,
  ContactPersonalTaxDisplayType INTEGER,
  InheritCompanyInfo INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  IsSpouseAlsoPersonalTaxClient INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  UserName TEXT,
  UserLevel INTEGER,
  UserColour INTEGER,
  ContactNum INTEGER,
  FamilyRelationship TEXT,
  CompanyNum INTEGER,
  CategoryNum INTEGER,
  PersonalTaxCategoryNum INTEGER,
  PersonalTaxClient INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  BusinessNotes TEXT,
  PersonalNotes TEXT
);

CREATE TABLE UserGeneralSettings (
  UserIDNum INTEGER PRIMARY KEY,
  OptionsContactNameDisplayType INTEGER,
  OptionsFamilyDisplayOption INTEGER
);

-- One row per user: calendar layout and the calendar texts per item kind.
CREATE TABLE UserCalendarSettings (
  UserIDNum INTEGER PRIMARY KEY,
  CalendarStartHour INTEGER,
  CalendarEndHour INTEGER,
  CalendarInterval INTEGER,
  CalendarDefaultView TEXT,
  ApptTemplate TEXT,
  ApptTitleBarText TEXT,
  DocketTemplate TEXT,
  DocketTitleBarText TEXT,
  TaskTemplate TEXT,
  TaskTitleBarText TEXT,
  BeforeAppointmentText TEXT,
  AfterAppointmentText TEXT
);

-- One row.
CREATE TABLE DataVersion (
  CurrentTaxYear TEXT,
  DataUniqueID TEXT
);

-- One row of labels and types of the custom columns. RemittanceCustomType 3 marks a contact lookup column.
CREATE TABLE CustomFields (
  RemittanceCustomInfo1 TEXT,
  RemittanceCustomInfo2 TEXT,
  RemittanceCustomInfo3 TEXT,
  RemittanceCustomInfo4 TEXT,
  RemittanceCustomInfo5 TEXT,
  RemittanceCustomType1 INTEGER,
  RemittanceCustomType2 INTEGER,
  RemittanceCustomType3 INTEGER,
  RemittanceCustomType4 INTEGER,
  RemittanceCustomType5 INTEGER,
  PersonalTaxTaskCustomInfo1 TEXT,
  PersonalTaxTaskCustomInfo2 TEXT,
  PersonalTaxTaskCustomInfo3 TEXT,
  PersonalTaxTaskCustomInfo4 TEXT,
  PersonalTaxTaskCustomInfo5 TEXT,
  PersonalTaxTaskCustomType1 INTEGER,
  PersonalTaxTaskCustomType2 INTEGER,
  PersonalTaxTaskCustomType3 INTEGER,
  PersonalTaxTaskCustomType4 INTEGER,
  PersonalTaxTaskCustomType5 INTEGER,
  ApptCustomName1 TEXT,
  ApptCustomName2 TEXT,
  ApptCustomName3 TEXT,
  ApptCustomName4 TEXT,
  ApptCustomName5 TEXT,
  TaskCustomName1 TEXT,
  TaskCustomName2 TEXT,
  TaskCustomName3 TEXT,
  TaskCustomName4 TEXT,
  TaskCustomName5 TEXT,
  DocketCustomName1 TEXT,
  DocketCustomName2 TEXT,
  DocketCustomName3 TEXT,
  DocketCustomName4 TEXT,
  DocketCustomName5 TEXT,
  CustomName1 TEXT,
  CustomName2 TEXT,
  CustomName3 TEXT,
  CustomName4 TEXT,
  CustomName5 TEXT,
  RemittanceLabel1 TEXT,
  RemittanceLabel2 TEXT,
  RemittanceLabel3 TEXT,
  RemittanceLabel4 TEXT,
  RemittanceLabel5 TEXT,
  CompanyLabel1 TEXT,
  CompanyLabel2 TEXT,
  CompanyLabel3 TEXT,
  CompanyLabel4 TEXT,
  CompanyLabel5 TEXT
);

-- One row: the labels of Contacts.Custom1 to Custom5.
CREATE TABLE CustomAddressFields (
  ContactLabel1 TEXT,
  ContactLabel2 TEXT,
  ContactLabel3 TEXT,
  ContactLabel4 TEXT,
  ContactLabel5 TEXT
);

-- Remittances and other scheduled tasks of a client (ClientNum is the ClientDataID).
CREATE TABLE Schedule (
  ScheduleID INTEGER PRIMARY KEY,
  ClientNum INTEGER,
  ContactIDNum INTEGER,
  scheduleName TEXT,
  totalNum INTEGER,
  scheduleNum INTEGER,
  DueDate TEXT /*date*/,
  inHouseDueDate TEXT /*date*/,
  NotifiedDate TEXT /*date*/,
  CalendarDate TEXT /*date*/,
  EmployeeAssigned TEXT,
  InPossession INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Notified INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Prepared INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Delivered INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Recieved INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Signature INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Cheque INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Closed INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  OverdueFlag INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  hideInTasks INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Year INTEGER,
  Amount REAL,
  PersonCompleted TEXT,
  DateCompleted TEXT /*date*/,
  Custom1 TEXT,
  Custom2 TEXT,
  Custom3 TEXT,
  Custom4 TEXT,
  Custom5 TEXT
);

-- Prior years of Schedule.
CREATE TABLE archiveSchedule (
  archiveScheduleID INTEGER PRIMARY KEY,
  ScheduleID INTEGER,
  ClientDataID INTEGER,
  ClientNum INTEGER,
  ContactIDNum INTEGER,
  scheduleName TEXT,
  totalNum INTEGER,
  scheduleNum INTEGER,
  DueDate TEXT /*date*/,
  inHouseDueDate TEXT /*date*/,
  NotifiedDate TEXT /*date*/,
  CalendarDate TEXT /*date*/,
  EmployeeAssigned TEXT,
  InPossession INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Notified INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Prepared INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Delivered INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Recieved INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Signature INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Cheque INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Closed INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  OverdueFlag INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  hideInTasks INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Year INTEGER,
  Amount REAL,
  PersonCompleted TEXT,
  DateCompleted TEXT /*date*/,
  Custom1 TEXT,
  Custom2 TEXT,
  Custom3 TEXT,
  Custom4 TEXT,
  Custom5 TEXT
);

-- Calendar work on a schedule row.
CREATE TABLE Tasks (
  TaskID INTEGER PRIMARY KEY,
  ScheduleIDNum INTEGER,
  CompanyIDNum INTEGER,
  ContactIDNum INTEGER,
  UserIDNum INTEGER,
  Subject TEXT,
  DateFrom TEXT /*date*/,
  TimeFrom TEXT /*date*/,
  TimeTo TEXT /*date*/,
  EstimatedTime REAL,
  ReminderPeriod INTEGER,
  AppointmentText TEXT,
  hideInTasks INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Custom1 TEXT,
  Custom2 TEXT,
  Custom3 TEXT,
  Custom4 TEXT,
  Custom5 TEXT
);

CREATE TABLE archiveTasks (
  archiveTaskID INTEGER PRIMARY KEY,
  oldTaskID INTEGER,
  ScheduleIDNum INTEGER,
  CompanyIDNum INTEGER,
  ContactIDNum INTEGER,
  UserIDNum INTEGER,
  Subject TEXT,
  DateFrom TEXT /*date*/,
  TimeFrom TEXT /*date*/,
  TimeTo TEXT /*date*/,
  EstimatedTime REAL,
  ReminderPeriod INTEGER,
  AppointmentText TEXT,
  hideInTasks INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Custom1 TEXT,
  Custom2 TEXT,
  Custom3 TEXT,
  Custom4 TEXT,
  Custom5 TEXT
);

CREATE TABLE Appointments (
  AppointmentID INTEGER PRIMARY KEY,
  CompanyIDNum INTEGER,
  ContactIDNum INTEGER,
  UserIDNum INTEGER,
  Subject TEXT,
  DateFrom TEXT /*date*/,
  TimeFrom TEXT /*date*/,
  TimeTo TEXT /*date*/,
  BackColour INTEGER,
  ReminderPeriod INTEGER,
  AppointmentText TEXT,
  Custom1 TEXT,
  Custom2 TEXT,
  Custom3 TEXT,
  Custom4 TEXT,
  Custom5 TEXT
);

-- Time entries. Times of day alone are kept on 1899-12-30; TotalTime columns in minutes.
CREATE TABLE Dockets (
  DocketID INTEGER PRIMARY KEY,
  CompanyIDNum INTEGER,
  ContactIDNum INTEGER,
  UserIDNum INTEGER,
  Subject TEXT,
  DateFrom TEXT /*date*/,
  TimeFrom TEXT /*date*/,
  TimeTo TEXT /*date*/,
  AppointmentText TEXT,
  DocketLocked INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Invoiced INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  ShowOnInvoice INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  UsedRealTime INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  RealTimeFrom TEXT /*date*/,
  RealTimeTo TEXT /*date*/,
  OriginalRealTimeFrom TEXT /*date*/,
  OriginalRealTimeTo TEXT /*date*/,
  RoundedTimeFrom TEXT /*date*/,
  RoundedTimeTo TEXT /*date*/,
  TextBody TEXT,
  DocketBillingType INTEGER,
  BillingJobRate REAL,
  BillableTime INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  TotalTimeReal REAL,
  TotalTimeRounded REAL,
  UseAdjustedTime INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  TotalTimeAdjusted REAL,
  TotalTimeFinal REAL,
  TotalAmountReal REAL,
  TotalAmountFinal REAL,
  DescriptionInternal TEXT,
  DescriptionClient TEXT,
  UserBillingRate REAL,
  BillingRateIDNum INTEGER,
  BillingProjectIDNum INTEGER,
  InterruptIDNum INTEGER,
  Custom1 TEXT,
  Custom2 TEXT,
  Custom3 TEXT,
  Custom4 TEXT,
  Custom5 TEXT
);

-- The user's own task types; item code ScheduleNum + 11100.
CREATE TABLE CustomTaskSchemes (
  CustomTaskSchemeID INTEGER PRIMARY KEY,
  SchemeName TEXT,
  ScheduleNum INTEGER
);

-- Document vault folders.
CREATE TABLE ClientDocumentStorage (
  ClientDocumentStorageID INTEGER PRIMARY KEY,
  ClientDataNum INTEGER,
  ContactNum INTEGER,
  FolderPath TEXT
);

-- One row a person and year. ActiveStatus 1 active.
CREATE TABLE PersonalTaxStatus (
  PersonalTaxStatusID INTEGER PRIMARY KEY,
  ContactNum INTEGER,
  TaxYear INTEGER,
  ActiveStatus INTEGER,
  InHouseDueDate TEXT /*date*/,
  ReturnDate TEXT /*date*/,
  ReturnStatus TEXT,
  OverdueFlag INTEGER NOT NULL DEFAULT 0 /*yes-no*/,
  Custom1 TEXT,
  Custom2 TEXT,
  Custom3 TEXT,
  Custom4 TEXT,
  Custom5 TEXT
);

-- One row a person and year.
CREATE TABLE PersonalTaxInfo (
  PersonalTaxInfoID INTEGER PRIMARY KEY,
  ContactNum INTEGER,
  TaxYear INTEGER,
  ReturnType TEXT,
  PreparedBy TEXT,
  FilingMethod TEXT,
  RefundAmount REAL,
  BalanceOwing REAL,
  DateFiled TEXT /*date*/,
  AssessmentDate TEXT /*date*/,
  Custom1 TEXT,
  Custom2 TEXT,
  Custom3 TEXT,
  Custom4 TEXT,
  Custom5 TEXT
);

CREATE INDEX ContactLinks_CompanyNum ON ContactLinks (CompanyNum);
CREATE INDEX ContactLinks_ContactIDNum ON ContactLinks (ContactIDNum);
CREATE INDEX ContactLinks_CategoryNum ON ContactLinks (CategoryNum);
CREATE INDEX ContactLinks_ContactNum ON ContactLinks (ContactNum);
CREATE INDEX ClientData_CompanyIDNum ON ClientData (CompanyIDNum);
CREATE INDEX Companies_CategoryNum ON Companies (CategoryNum);
CREATE INDEX Companies_CompanyName ON Companies (CompanyName COLLATE NOCASE);
CREATE INDEX Categories_CategorySpecialCode ON Categories (CategorySpecialCode);
CREATE INDEX Schedule_ClientNum ON Schedule (ClientNum);
CREATE INDEX Tasks_ScheduleIDNum ON Tasks (ScheduleIDNum);
CREATE INDEX PersonalTaxStatus_ContactNum ON PersonalTaxStatus (ContactNum, TaxYear);
CREATE INDEX PersonalTaxInfo_ContactNum ON PersonalTaxInfo (ContactNum, TaxYear);
