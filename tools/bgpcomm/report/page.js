
"use strict";
// Sorts a table by the column whose head is clicked, or pressed by the keyboard: once more turns the
// order round. Numbers begin with the largest.
{
  const keyOf = {
    text: (cell) => cell.textContent,
    number: (cell) => {
      const number = parseFloat(cell.textContent.replaceAll(",", ""));
      return Number.isNaN(number) ? -Infinity : number;
    },
  };
  const compare = {
    text: new Intl.Collator("en", { numeric: true }).compare,
    number: (a, b) => (a < b ? -1 : a > b ? 1 : 0),
  };

  const sort = (table, head) => {
    const column = head.cellIndex;
    const form = head.classList.contains("number") ? "number" : "text";
    const first = form === "number" ? "descending" : "ascending";
    const second = form === "number" ? "ascending" : "descending";
    const order = head.getAttribute("aria-sort") === first ? second : first;
    const turn = order === "ascending" ? 1 : -1;
    for (const other of table.tHead.rows[0].cells) other.removeAttribute("aria-sort");
    head.setAttribute("aria-sort", order);
    const body = table.tBodies[0];
    const rows = Array.from(body.rows, (row) => [keyOf[form](row.cells[column]), row]);
    rows.sort((a, b) => turn * compare[form](a[0], b[0]));
    const sorted = document.createDocumentFragment();
    for (const [, row] of rows) sorted.append(row);
    body.append(sorted);
  };

  for (const table of document.querySelectorAll("table")) {
    for (const head of table.tHead.rows[0].cells) {
      const button = document.createElement("button");
      button.type = "button";
      button.append(...head.childNodes);
      button.addEventListener("click", () => sort(table, head));
      head.append(button);
    }
  }
}
