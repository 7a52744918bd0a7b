// Reads the same tables with the library, DuckDB and Polars, each with one thread and with two, all in processes of their
// own that take turns. The columns' types are declared where that can be done.
//
// node peers.mjs PROGRAM FOLDER    PROGRAM is orvalo_peers_benchmark; the packages lie in FOLDER/node_modules

import { execFileSync } from "node:child_process";
import { createRequire } from "node:module";
import { fileURLToPath } from "node:url";
import path from "node:path";

const repetitions = 5;
const indexColumns = ["x", "y", "z", "f"];
const valueColumns = Array.from({ length: 9 }, (_, i) => `v${i}`);

/** Files, called as Polars expects, and what is in their columns: s for 16-bit integers, b for bytes, d for doubles. */
const files = {
  cubes: { model: "cubes.model", rows: "cubes.csv", separator: " ", header: false, columns: { x: "s", y: "s", z: "s", material: "b" } },
  results: {
    model: "results.csv",
    rows: "results.csv",
    separator: "\t",
    header: true,
    columns: Object.fromEntries([...indexColumns.map((c) => [c, "s"]), ...valueColumns.map((c) => [c, "d"])]),
  },
};

async function secondsOf(read) {
  const seconds = [];
  for (let i = 0; i < repetitions; ++i) {
    const start = process.hrtime.bigint();
    await read();
    seconds.push(Number(process.hrtime.bigint() - start) / 1e9);
  }
  return seconds;
}

const readers = {
  async DuckDB(load, folder, file, threads) {
    const { DuckDBInstance } = load("@duckdb/node-api");
    const database = await DuckDBInstance.create(":memory:", { threads: String(threads) });
    const connection = await database.connect();
    const types = { s: "SMALLINT", b: "UTINYINT", d: "DOUBLE" };
    const columns = Object.entries(file.columns).map(([name, type]) => `'${name}': '${types[type]}'`);
    const table = `read_csv('${path.join(folder, file.rows)}', delim = '${file.separator}', header = ${file.header},
      columns = {${columns.join(", ")}}, auto_detect = false)`;
    return secondsOf(() => connection.run(`CREATE OR REPLACE TABLE t AS SELECT * FROM ${table}`));
  },

  async Polars(load, folder, file) {
    const pl = load("nodejs-polars");
    const types = { s: pl.Int16, b: pl.UInt8, d: pl.Float64 };
    const names = Object.keys(file.columns);
    const schema = Object.fromEntries(
      names.map((name, i) => [file.header ? name : `column_${i + 1}`, types[file.columns[name]]]),
    );
    const options = { sep: file.separator, hasHeader: file.header, schema, dtypes: schema, inferSchemaLength: 1 };
    return secondsOf(() => pl.readCSV(path.join(folder, file.rows), options));
  },
};

function run(program, folder, reader, name, threads) {
  const environment = { ...process.env, POLARS_MAX_THREADS: String(threads) };
  const command =
    reader === "library"
      ? [program, ["read", path.join(folder, files[name].model), String(threads), String(repetitions)]]
      : [process.execPath, [fileURLToPath(import.meta.url), "child", folder, reader, name, String(threads)]];
  const output = execFileSync(...command, { env: environment, encoding: "utf8" });
  return Math.min(...output.trim().split("\n").map(Number));
}

const [program, folder, ...child] = process.argv.slice(2);
if (program === "child") {
  const [reader, name, threads] = child;
  const load = createRequire(path.join(folder, "package.json"));
  const seconds = await readers[reader](load, folder, files[name], Number(threads));
  console.log(seconds.join("\n"));
} else {
  console.log("file      threads  reader    seconds  times the library");
  for (const name of Object.keys(files)) {
    for (const threads of [1, 2]) {
      const seconds = {};
      for (let round = 0; round < 3; ++round) {
        for (const reader of ["library", ...Object.keys(readers)]) {
          seconds[reader] = Math.min(seconds[reader] ?? Infinity, run(program, folder, reader, name, threads));
        }
      }
      for (const [reader, least] of Object.entries(seconds)) {
        const times = (least / seconds.library).toFixed(1);
        console.log(`${name.padEnd(9)} ${String(threads).padStart(7)}  ${reader.padEnd(8)} ${least.toFixed(3).padStart(8)}  ${times}`);
      }
    }
  }
}
