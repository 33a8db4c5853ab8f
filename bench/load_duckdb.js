// Loads the facts of bench/cube_build into a table of DuckDB's in memory, sorted as the cube is, and
// prints seconds and the largest memory in MB.
//
//   node load_duckdb.js FOLDER      from a folder whose node_modules has DuckDB
const { createRequire } = require('module');
const { DuckDBInstance } = createRequire(process.cwd() + '/')('@duckdb/node-api');

async function main(folder) {
  const begin = process.hrtime.bigint();
  const connection = await (await DuckDBInstance.create(':memory:')).connect();
  await connection.run(`create table fact as select * from read_csv('${folder}/fact.csv', columns = {
      'date_id': 'integer', 'qel_id': 'integer', 'act_id': 'integer', 'ob': 'integer',
      'money_id': 'integer', 'amount': 'decimal(18, 2)', 'units': 'integer'})
    order by ob, money_id, act_id, date_id, qel_id`);
  const seconds = Number(process.hrtime.bigint() - begin) / 1e9;
  console.log(`${seconds.toFixed(3)} ${Math.round(process.resourceUsage().maxRSS / 1024)}`);
}

main(process.argv[2]);
