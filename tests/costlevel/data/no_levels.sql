-- A company that has no price levels.
DELETE FROM costlist
DELETE FROM CostLevel WHERE CostType = 1
