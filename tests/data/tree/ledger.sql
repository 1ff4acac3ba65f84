-- A contact ledger written by hand for the client tree: every kind of node,
-- an inactive client and an inactive personal-tax client, an associate
-- company (which also names a category), two companies that are each
-- other's host, a person linked twice to one company, a link to a company
-- that no longer exists, a tax category without a year, a firm
-- sub-category and an employee without a category.
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (1, NULL, 'Contact Ledger', 'Main');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (2, 1, 'Business clients', 'BusinessCategory');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (3, 1, 'Personal clients', 'PersonalCategory');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (4, 1, 'Firm Staff', 'FirmCategory');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (5, 3, '2022 Tax Year', 'TaxYear:2022');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (6, 3, '2023 Tax Year', 'TaxYear:2023');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (7, 6, 'Seniors', '');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (8, 2, 'Retail', '');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (10, 4, 'Partners', '');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (11, 3, 'Unfiled', NULL);
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (12, 1, 'prospects', '');
INSERT INTO Companies (CompanyID, CategoryNum, CompanyNum, CompanyName) VALUES (20, 8, NULL, 'Acme Widgets');
INSERT INTO Companies (CompanyID, CategoryNum, CompanyNum, CompanyName) VALUES (21, 8, NULL, 'Bakery on Main');
INSERT INTO Companies (CompanyID, CategoryNum, CompanyNum, CompanyName) VALUES (22, 8, 20, 'Acme Holdings');
INSERT INTO Companies (CompanyID, CategoryNum, CompanyNum, CompanyName) VALUES (23, 2, NULL, 'Zed Consulting');
INSERT INTO Companies (CompanyID, CategoryNum, CompanyNum, CompanyName) VALUES (24, 12, NULL, 'Prospect Co');
INSERT INTO Companies (CompanyID, CategoryNum, CompanyNum, CompanyName) VALUES (25, 12, 26, 'Loop A');
INSERT INTO Companies (CompanyID, CategoryNum, CompanyNum, CompanyName) VALUES (26, 12, 25, 'Loop B');
INSERT INTO ClientData (ClientDataID, CompanyIDNum, ActiveStatus, ShowThisClient) VALUES (100, 20, 1, 1);
INSERT INTO ClientData (ClientDataID, CompanyIDNum, ActiveStatus, ShowThisClient) VALUES (101, 21, 2, 1);
INSERT INTO ClientData (ClientDataID, CompanyIDNum, ActiveStatus, ShowThisClient) VALUES (102, 22, 1, 0);
INSERT INTO ClientData (ClientDataID, CompanyIDNum, ActiveStatus, ShowThisClient) VALUES (103, 24, 1, 1);
INSERT INTO AccountingServices (AccountingServiceID) VALUES (100), (101), (102), (103);
INSERT INTO ClientOptions (ClientOptionID) VALUES (100), (101), (102), (103);
INSERT INTO CorpTaxInfo (CorpTaxInfoID) VALUES (100), (101), (102), (103);
INSERT INTO LawInfo (LawInfoID) VALUES (100), (101), (102), (103);
INSERT INTO OtherInfo (OtherInfoID) VALUES (100), (101), (102), (103);
INSERT INTO SoftwareInfo (SoftwareInfoID) VALUES (100), (101), (102), (103);
INSERT INTO WSIB_EHTInfo (WSIB_EHTInfoID) VALUES (100), (101), (102), (103);
INSERT INTO CompaniesNotes (CompanyNum) VALUES (20), (21), (22), (23), (24), (25), (26);
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (200, 'Ann Lee', 'Ann', 'Lee');
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (201, 'Bob Roy', 'Bob', 'Roy');
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (202, 'Cy Ng', 'Cy', 'Ng');
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (203, 'Dee Fox', 'Dee', 'Fox');
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (204, 'Eve Fox', 'Eve', 'Fox');
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (205, 'Gus Old', 'Gus', 'Old');
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (206, 'Hal Kim', 'Hal', 'Kim');
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (207, 'Ivy Poe', 'Ivy', 'Poe');
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (208, 'Jo Sun', 'Jo', 'Sun');
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (209, 'Kit Gone', 'Kit', 'Gone');
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (200, 20, NULL, NULL, 0, 'Not Specified', 0);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (201, 20, NULL, NULL, 0, 'Not Specified', 1);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (200, 20, NULL, NULL, 0, 'Not Specified', 0);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (201, 24, NULL, NULL, 0, 'Not Specified', 0);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (202, 21, NULL, NULL, 0, 'Not Specified', 1);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (202, NULL, 1, NULL, 0, 'Not Specified', 0);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (200, NULL, NULL, 201, 0, 'Not Specified', 0);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (203, NULL, 6, NULL, 1, 'Not Specified', 0);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (204, NULL, NULL, 203, 1, 'Spouse', 0);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (205, NULL, 5, NULL, 1, 'Not Specified', 0);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (206, NULL, 7, NULL, 1, 'Not Specified', 0);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (207, NULL, 11, NULL, 1, 'Not Specified', 0);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (208, NULL, 12, NULL, 0, 'Not Specified', 0);
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, CategoryNum, ContactNum, IsPersonalTaxCategory, FamilyRelationship, DefaultContact) VALUES (209, 99, NULL, NULL, 0, 'Not Specified', 1);
INSERT INTO PersonalTaxStatus (ContactNum, TaxYear, ActiveStatus) VALUES (205, 2022, 2);
INSERT INTO PersonalTaxStatus (ContactNum, TaxYear, ActiveStatus) VALUES (206, 2023, 1);
INSERT INTO PersonalTaxStatus (ContactNum, TaxYear, ActiveStatus) VALUES (203, 2023, 2);
INSERT INTO AccountantEmployeeInfo (ContactID, DisplayName, FirstName, LastName, UserName, UserLevel, CategoryNum, ContactNum, FamilyRelationship) VALUES (300, 'Margaret Ellis', 'Margaret', 'Ellis', 'margaret', 1, 4, NULL, NULL);
INSERT INTO AccountantEmployeeInfo (ContactID, DisplayName, FirstName, LastName, UserName, UserLevel, CategoryNum, ContactNum, FamilyRelationship) VALUES (301, 'Dan Okafor', 'Dan', 'Okafor', 'dan', 2, 10, NULL, NULL);
INSERT INTO AccountantEmployeeInfo (ContactID, DisplayName, FirstName, LastName, UserName, UserLevel, CategoryNum, ContactNum, FamilyRelationship) VALUES (302, 'Robert Ellis', 'Robert', 'Ellis', NULL, 0, 4, 300, 'Spouse');
INSERT INTO AccountantEmployeeInfo (ContactID, DisplayName, FirstName, LastName, UserName, UserLevel, CategoryNum, ContactNum, FamilyRelationship) VALUES (303, 'Pat Nowhere', 'Pat', 'Nowhere', 'pat', 2, NULL, NULL, NULL);
INSERT INTO UserGeneralSettings (UserIDNum, OptionsContactNameDisplayType, OptionsFamilyDisplayOption) VALUES (300, 2, 1);
