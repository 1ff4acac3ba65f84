-- A small practice written by hand, as the host would store it: Yes/No as
-- 0/1 (one as -1, which the old engine wrote), ISO dates, times of day on
-- 1899-12-30.
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (1, NULL, 'Contact Ledger', 'Main');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (2, 1, 'Business', 'BusinessCategory');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (3, 1, 'Personal', 'PersonalCategory');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (4, 3, '2023', 'TaxYear:2023');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (5, 4, 'Seniors', '');
INSERT INTO Categories (CategoryID, CategoryNum, CategoryName, CategorySpecialCode) VALUES (6, 2, 'Retail', '');
INSERT INTO Companies (CompanyID, CategoryNum, CompanyName, City, Email) VALUES (10, 6, 'Acme Widgets', 'Toronto', NULL);
INSERT INTO Companies (CompanyID, CategoryNum, CompanyName, City, Email) VALUES (11, 6, 'bakery on main', 'Ottawa', '');
INSERT INTO Companies (CompanyID, CategoryNum, CompanyName, City, Email) VALUES (12, 2, 'O''Brien & Sons', 'Montréal', 'ob@example.com');
INSERT INTO Companies (CompanyID, CategoryNum, CompanyName, City) VALUES (13, 2, 'Zed Holdings', 'Guelph');
INSERT INTO ClientData (ClientDataID, CompanyIDNum, ActiveStatus, ShowThisClient) VALUES (100, 10, 1, 1);
INSERT INTO ClientData (ClientDataID, CompanyIDNum, ActiveStatus, ShowThisClient) VALUES (101, 11, 2, -1);
INSERT INTO ClientData (ClientDataID, CompanyIDNum, ActiveStatus, ShowThisClient) VALUES (102, 12, 1, 0);
INSERT INTO ClientData (ClientDataID, CompanyIDNum, ActiveStatus, ShowThisClient) VALUES (103, 13, NULL, 1);
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (200, 'Ann Lee', 'Ann', 'Lee');
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (201, 'Bob Roy', 'Bob', 'Roy');
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (202, 'Cy Ng', 'Cy', 'Ng');
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, DefaultContact, FamilyRelationship) VALUES (200, 10, 0, 'Not Specified');
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, DefaultContact, FamilyRelationship) VALUES (201, 10, 1, 'Not Specified');
INSERT INTO ContactLinks (ContactIDNum, CompanyNum, DefaultContact, FamilyRelationship) VALUES (202, 11, 0, 'Not Specified');
INSERT INTO ContactLinks (ContactIDNum, CategoryNum, IsPersonalTaxCategory, FamilyRelationship) VALUES (202, 5, 0, 'Not Specified');
INSERT INTO ContactLinks (ContactIDNum, ContactNum, FamilyRelationship) VALUES (201, 200, 'Spouse');
INSERT INTO Schedule (ScheduleID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate, Amount, Closed, hideInTasks, EmployeeAssigned) VALUES (300, 100, '1st Quarterly GST Payment', 101, 1, '2023-03-31', 125.5, 0, 0, 'Dana Fox');
INSERT INTO Schedule (ScheduleID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate, Amount, Closed, hideInTasks, EmployeeAssigned) VALUES (301, 100, 'Payroll Remittance', 103, 1, '2023-04-15', 900, 1, 0, 'O''Neil');
INSERT INTO Schedule (ScheduleID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate, Amount, Closed, hideInTasks, EmployeeAssigned) VALUES (302, 101, 'Year End GST Return', 101, 4, '2023-12-31', NULL, -1, 1, NULL);
INSERT INTO Appointments (AppointmentID, CompanyIDNum, Subject, DateFrom, TimeFrom, TimeTo, BackColour) VALUES (400, 10, 'Review, 50% done', '2023-05-02', '1899-12-30 09:30:00', '1899-12-30 10:00:00', 0);
INSERT INTO Appointments (AppointmentID, CompanyIDNum, Subject, DateFrom, TimeFrom, TimeTo, BackColour) VALUES (401, 12, 'Year end meeting', '2023-05-03', '14:00:00', '15:15:00', 255);
