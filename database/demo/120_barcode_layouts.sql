-- Layouts of the scales' barcodes; the first two digits say which.

IF NOT EXISTS (SELECT 1 FROM dbo.BarCodeFormul)
BEGIN
    INSERT INTO dbo.BarCodeFormul (
        Title, DigitCount, ConstantStart, ConstantCount, ConstantCode, BarCodeType, ItemConstantCode, ItemCodeType,
        ItemCodeStart, ItemCodeCount, AmountStart, AmountCount, AmountDivide, BalanceNoStart, BalanceNoCount,
        BalanceNoAsStore, PriceStart, PriceCount)
    VALUES
        (N'وزن با کد کالا', 13, 1, 2, N'28', 1, 0, 1, 3, 5, 8, 5, 1000, 0, 0, 0, 0, 0),
        (N'وزن و قیمت با شماره ترازو', 20, 1, 2, N'27', 1, 0, 2, 3, 5, 10, 5, 1000, 8, 2, 1, 15, 6),
        (N'جعبه موز', 12, 1, 2, N'26', 1, 105, 0, 0, 0, 3, 5, 1000, 0, 0, 0, 0, 0),
        (N'مبلغ رسید ترازو', 13, 1, 2, N'29', 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 10),
        (N'جمع فاکتور', 13, 1, 2, N'25', 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 10)
END
go
