// The question of bench/query in DuckDB, on entries sorted as the question asks for them.
//
//   node query_duckdb.js FOLDER QUESTION_SQL      from a folder whose node_modules has DuckDB
const { createRequire } = require('module');
const fs = require('fs');
const { DuckDBInstance } = createRequire(process.cwd() + '/')('@duckdb/node-api');

const kRounds = 15;

async function main(folder, questionFile) {
  const question = fs.readFileSync(questionFile, 'utf8');
  const instance = await DuckDBInstance.create(':memory:');
  const connection = await instance.connect();
  await connection.run(`create table entries as
    select e.date_id, e.line_id, e.file_id, e.opening_key, e.money_id,
           cast(round(e.amount * 100) as bigint) amount, e.units, l.ledger_id
    from read_csv('${folder}/entries.csv') e join (
      select file_id, dense_rank() over (order by first_file) ledger_id from (
        select file_id, min(file_id) over (partition by ledger) first_file
        from read_csv('${folder}/files.csv'))) l using (file_id)
    order by ledger_id, opening_key, date_id, line_id`);
  const times = [];
  for (let round = 0; round <= kRounds; ++round) {
    const begin = process.hrtime.bigint();
    await (await connection.run(question)).getRows();
    if (round > 0) times.push(Number(process.hrtime.bigint() - begin) / 1e6);
  }
  times.sort((a, b) => a - b);
  console.log(`query, one ledger, warm             DuckDB, sorted ${times[kRounds >> 1].toFixed(3).padStart(14)} ms`);
}

main(process.argv[2], process.argv[3]);
