-- An index behind every foreign key: without it a row that others refer to is deleted only after all of them have been
-- read, a unit after all goods, a store after the whole ledger.

IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_GoodInf_Unit')
    CREATE INDEX IX_GoodInf_Unit ON dbo.GoodInf (Unit)
IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_GoodInf_Unit2')
    CREATE INDEX IX_GoodInf_Unit2 ON dbo.GoodInf (Unit2)
IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_Kardex_Anbar')
    CREATE INDEX IX_Kardex_Anbar ON dbo.Kardex (Anbar)
IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_SanadDetail_kala')
    CREATE INDEX IX_SanadDetail_kala ON dbo.SanadDetail (kala)
IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_PerInf_ShahrCode')
    CREATE INDEX IX_PerInf_ShahrCode ON dbo.PerInf (ShahrCode)
IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_GoodDetailKardex_StoreCode')
    CREATE INDEX IX_GoodDetailKardex_StoreCode ON dbo.GoodDetailKardex (StoreCode)
IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_GoodDetailRelation_DetailID')
    CREATE INDEX IX_GoodDetailRelation_DetailID ON dbo.GoodDetailRelation (DetailID)
IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_GoodDetailValueDetails_DetailID')
    CREATE INDEX IX_GoodDetailValueDetails_DetailID ON dbo.GoodDetailValueDetails (DetailID)
IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_HostUsers_GroupCode')
    CREATE INDEX IX_HostUsers_GroupCode ON dbo.HostUsers (GroupCode)
IF NOT EXISTS (SELECT 1 FROM sys.indexes WHERE name = N'IX_Scales_Groups_ScaleCode')
    CREATE INDEX IX_Scales_Groups_ScaleCode ON dbo.Scales_Groups (ScaleCode)
go
