-- Loads the sample's CSV files from the current folder. H2's CSVREAD reads every column as text.
CREATE TABLE "dates" AS SELECT CAST("date_id" AS INT) AS "date_id", CAST("year_no" AS INT) AS "year_no",
  CAST("quarter_no" AS INT) AS "quarter_no", CAST("month_no" AS INT) AS "month_no",
  CAST("day_no" AS INT) AS "day_no", "month_name", "quarter_name"
  FROM CSVREAD('dates.csv', NULL, 'charset=UTF-8 caseSensitiveColumnNames=true preserveWhitespace=true');
CREATE TABLE "lines" AS SELECT CAST("line_id" AS INT) AS "line_id", "section", "grp", "item", "caption",
  CAST("sort" AS INT) AS "sort"
  FROM CSVREAD('lines.csv', NULL, 'charset=UTF-8 caseSensitiveColumnNames=true preserveWhitespace=true');
CREATE TABLE "files" AS SELECT CAST("file_id" AS INT) AS "file_id", "ledger", "file"
  FROM CSVREAD('files.csv', NULL, 'charset=UTF-8 caseSensitiveColumnNames=true preserveWhitespace=true');
CREATE TABLE "opening" AS SELECT CAST("opening_id" AS INT) AS "opening_id", "meaning"
  FROM CSVREAD('opening.csv', NULL, 'charset=UTF-8 caseSensitiveColumnNames=true preserveWhitespace=true');
CREATE TABLE "money" AS SELECT CAST("money_id" AS INT) AS "money_id", "code", "nickname"
  FROM CSVREAD('money.csv', NULL, 'charset=UTF-8 caseSensitiveColumnNames=true preserveWhitespace=true');
CREATE TABLE "facts" AS SELECT CAST("date_id" AS INT) AS "date_id", CAST("line_id" AS INT) AS "line_id",
  CAST("file_id" AS INT) AS "file_id", CAST("opening_id" AS INT) AS "opening_id",
  CAST("money_id" AS INT) AS "money_id", CAST("amount" AS DOUBLE PRECISION) AS "amount",
  CAST("units" AS DOUBLE PRECISION) AS "units"
  FROM CSVREAD('facts.csv', NULL, 'charset=UTF-8 caseSensitiveColumnNames=true preserveWhitespace=true');
ALTER TABLE "dates" ALTER COLUMN "date_id" SET NOT NULL;
ALTER TABLE "dates" ADD PRIMARY KEY ("date_id");
ALTER TABLE "lines" ALTER COLUMN "line_id" SET NOT NULL;
ALTER TABLE "lines" ADD PRIMARY KEY ("line_id");
ALTER TABLE "files" ALTER COLUMN "file_id" SET NOT NULL;
ALTER TABLE "files" ADD PRIMARY KEY ("file_id");
ALTER TABLE "opening" ALTER COLUMN "opening_id" SET NOT NULL;
ALTER TABLE "opening" ADD PRIMARY KEY ("opening_id");
ALTER TABLE "money" ALTER COLUMN "money_id" SET NOT NULL;
ALTER TABLE "money" ADD PRIMARY KEY ("money_id");
